#include "platform/aes.h"

#include <cstring>
#include <limits>
#include <memory>
#include <new>

#include "platform/secure_memory.h"
#include "platform/windows/aes_provider.h"

namespace VelmoraQuavin::internal::platform {

// The initialisation vector is decrypted as if it were the first block: the system starts from a
// vector of zeros, so that block comes out as garbage and every block after it is right.
bool decryptAes128Cbc(const unsigned char* input, std::size_t length, unsigned char* output,
                      const unsigned char* key) noexcept {
    const AesKey aes(key);
    if (!aes || length > std::numeric_limits<ULONG>::max()) {
        return false;
    }
    const std::unique_ptr<unsigned char[]> scratch(new (std::nothrow) unsigned char[length]);
    if (scratch == nullptr) {
        return false;
    }
    const auto count = static_cast<ULONG>(length);
    ULONG written = 0;
    const bool decrypted =
        BCRYPT_SUCCESS(::BCryptDecrypt(aes.get(), const_cast<unsigned char*>(input), count, nullptr,
                                       nullptr, 0, scratch.get(), count, &written, 0));
    if (decrypted) {
        std::memcpy(output, scratch.get() + kAesBlockSize, length - kAesBlockSize);
    }
    wipeMemory(scratch.get(), length);
    return decrypted;
}

}  // namespace VelmoraQuavin::internal::platform
