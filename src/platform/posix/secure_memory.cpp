#include "platform/secure_memory.h"

#include <openssl/crypto.h>

namespace VelmoraQuavin::internal::platform {

void wipeMemory(void* bytes, std::size_t count) noexcept {
    if (count != 0) {
        OPENSSL_cleanse(bytes, count);
    }
}

}  // namespace VelmoraQuavin::internal::platform
