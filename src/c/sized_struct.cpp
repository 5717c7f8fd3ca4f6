#include "c/sized_struct.h"

#include <string>

namespace VelmoraQuavin::internal {
namespace {

// More than any version will need: a larger size is a mistake, and would be read past the struct.
constexpr std::size_t kLargest = 4096;

}  // namespace

std::size_t statedSize(const void* given, const char* type) {
    std::size_t size = 0;
    std::memcpy(&size, given, sizeof size);
    // All members fill whole units, so that no version ends within one.
    if (size < sizeof size || size % sizeof size != 0 || size > kLargest) {
        throw InvalidArgumentsException(std::string(type) + ": no version has the size " +
                                        std::to_string(size));
    }
    return size;
}

void requireZero(const void* given, std::size_t begin, std::size_t end, const char* type) {
    const auto* const bytes = static_cast<const unsigned char*>(given);
    for (std::size_t i = begin; i < end; ++i) {
        if (bytes[i] != 0) {
            throw InvalidArgumentsException(std::string(type) +
                                            ": a member that this version does not know is set");
        }
    }
}

}  // namespace VelmoraQuavin::internal
