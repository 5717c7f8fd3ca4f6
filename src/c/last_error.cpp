#include "c/last_error.h"

#include <array>
#include <cstring>

namespace VelmoraQuavin::internal {
namespace {

constexpr std::size_t kRoom = 1024;

// An array, because storing an error must not need memory when that is what has run out. A thread's
// first failure may need it once, where the system sets thread-local memory aside only when it is
// used.
thread_local std::array<char, kRoom> lastError{};

bool continuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

}  // namespace

void setLastError(const char* text) noexcept {
    std::size_t length = std::strlen(text);
    if (length >= kRoom) {
        length = kRoom - 1;
        while (length > 0 && continuesCharacter(text[length])) {
            --length;
        }
    }
    // The text may be the last error itself.
    std::memmove(lastError.data(), text, length);
    lastError.at(length) = '\0';
}

quavin_status settle(const QuavinStatus& status) noexcept {
    const auto code = static_cast<quavin_status>(status.code);
    if (!status.ok()) {
        setLastError(status.description.empty()
                         ? quavin_status_name(code)
                         : reinterpret_cast<const char*>(status.description.c_str()));
    }
    return code;
}

quavin_status settleCurrentException() noexcept {
    return settle(getStatusFromCurrentException());
}

}  // namespace VelmoraQuavin::internal

const char* quavin_last_error(void) {
    return VelmoraQuavin::internal::lastError.data();
}
