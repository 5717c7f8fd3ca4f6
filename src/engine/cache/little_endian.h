#pragma once

#include <array>
#include <cstddef>
#include <limits>

namespace VelmoraQuavin::internal {

/// The bytes of an unsigned number, least significant first, on any processor.
template <typename Number>
std::array<unsigned char, sizeof(Number)> littleEndian(Number number) noexcept {
    static_assert(!std::numeric_limits<Number>::is_signed);
    std::array<unsigned char, sizeof(Number)> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<unsigned char>(number >> (8 * i));
    }
    return bytes;
}

}  // namespace VelmoraQuavin::internal
