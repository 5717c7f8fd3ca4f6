#include "platform/secure_memory.h"

#include <windows.h>

namespace VelmoraQuavin::internal::platform {

void wipeMemory(void* bytes, std::size_t count) noexcept {
    if (count != 0) {
        SecureZeroMemory(bytes, count);
    }
}

}  // namespace VelmoraQuavin::internal::platform
