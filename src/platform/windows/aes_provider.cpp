#include "platform/windows/aes_provider.h"

#include <array>
#include <cstring>

#include "platform/aes.h"
#include "platform/secure_memory.h"

namespace VelmoraQuavin::internal::platform {

AesKey::AesKey(const unsigned char* key) noexcept {
    std::array<unsigned char, kAesKeySize> bytes{};
    std::memcpy(bytes.data(), key, bytes.size());
    ULONG written = 0;
    if (BCRYPT_SUCCESS(
            ::BCryptOpenAlgorithmProvider(&provider_, BCRYPT_AES_ALGORITHM, nullptr, 0)) &&
        BCRYPT_SUCCESS(::BCryptGetProperty(provider_, BCRYPT_OBJECT_LENGTH,
                                           reinterpret_cast<PUCHAR>(&objectSize_),
                                           sizeof objectSize_, &written, 0))) {
        object_ = static_cast<unsigned char*>(::HeapAlloc(::GetProcessHeap(), 0, objectSize_));
    }
    if (object_ != nullptr && !BCRYPT_SUCCESS(::BCryptGenerateSymmetricKey(
                                  provider_, &key_, object_, objectSize_, bytes.data(),
                                  static_cast<ULONG>(bytes.size()), 0))) {
        key_ = nullptr;
    }
    wipeMemory(bytes.data(), bytes.size());
}

AesKey::~AesKey() {
    if (key_ != nullptr) {
        ::BCryptDestroyKey(key_);
    }
    if (object_ != nullptr) {
        wipeMemory(object_, objectSize_);
        ::HeapFree(::GetProcessHeap(), 0, object_);
    }
    if (provider_ != nullptr) {
        ::BCryptCloseAlgorithmProvider(provider_, 0);
    }
}

}  // namespace VelmoraQuavin::internal::platform
