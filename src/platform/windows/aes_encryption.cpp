#include "platform/aes_encryption.h"

#include <array>
#include <cstring>
#include <limits>

#include "platform/windows/aes_provider.h"

namespace VelmoraQuavin::internal::platform {

bool encryptAes128Cbc(const unsigned char* plain, std::size_t length, const unsigned char* vector,
                      unsigned char* output, const unsigned char* key) noexcept {
    if (length == 0) {
        return true;
    }
    const AesKey aes(key);
    if (!aes || length > std::numeric_limits<ULONG>::max()) {
        return false;
    }
    std::array<unsigned char, kAesBlockSize> chain{};  // the call overwrites it
    std::memcpy(chain.data(), vector, chain.size());
    const auto count = static_cast<ULONG>(length);
    ULONG written = 0;
    return BCRYPT_SUCCESS(::BCryptEncrypt(aes.get(), const_cast<unsigned char*>(plain), count,
                                          nullptr, chain.data(), static_cast<ULONG>(chain.size()),
                                          output, count, &written, 0)) &&
           written == count;
}

bool fillRandom(unsigned char* bytes, std::size_t count) noexcept {
    return count <= std::numeric_limits<ULONG>::max() &&
           BCRYPT_SUCCESS(::BCryptGenRandom(nullptr, bytes, static_cast<ULONG>(count),
                                            BCRYPT_USE_SYSTEM_PREFERRED_RNG));
}

}  // namespace VelmoraQuavin::internal::platform
