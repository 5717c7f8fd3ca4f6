#include "platform/posix/whole_write.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <system_error>

#include "platform/largest_transfer.h"

namespace VelmoraQuavin::internal::platform {

ssize_t readSome(int file, void* buffer, std::size_t count) noexcept {
    ssize_t result = 0;
    do {
        result = ::read(file, buffer, count);
    } while (result < 0 && errno == EINTR);
    return result;
}

bool writeWhole(int file, const void* bytes, std::uint64_t count) noexcept {
    const auto* next = static_cast<const char*>(bytes);
    while (count > 0) {
        const ssize_t written =
            ::write(file, next, static_cast<std::size_t>(std::min(count, kLargestTransfer)));
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        next += written;
        count -= static_cast<std::uint64_t>(written);
    }
    return true;
}

std::string problemText(const char* what, int error) {
    return std::string(what) + ": " + std::generic_category().message(error);
}

}  // namespace VelmoraQuavin::internal::platform
