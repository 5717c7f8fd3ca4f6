#include "tensor/element_size.h"

#include <array>
#include <cstddef>
#include <limits>

namespace VelmoraQuavin::internal {
namespace {

// Indexed by the type's number.
constexpr std::array<int64, 13> kElementSizes = {0, 1, 1, 1, 2, 2, 4, 4, 8, 8, 2, 4, 8};

static_assert(sizeof(std::size_t) == sizeof(uint64), "byte counts are 64 bits wide");

constexpr std::size_t kMoreThanAvailable = std::numeric_limits<std::size_t>::max();
constexpr auto kMostBytes = static_cast<uint64>(std::numeric_limits<int64>::max());

}  // namespace

int64 elementSize(DataType type) noexcept {
    const auto index = static_cast<std::size_t>(type);
    return index < kElementSizes.size() ? kElementSizes[index] : 0;
}

int64 byteCount(DataType type, const TensorShape& shape) noexcept {
    return static_cast<int64>(static_cast<uint64>(shape.size()) *
                              static_cast<uint64>(elementSize(type)));
}

std::optional<int64> exactByteCount(DataType type, const TensorShape& shape) noexcept {
    auto count = static_cast<uint64>(elementSize(type));
    bool fits = true;
    bool negative = false;
    for (uint64 index = 0; index < shape.dimension(); ++index) {
        const int64 extent = shape[index];
        const uint64 magnitude =
            extent < 0 ? uint64{0} - static_cast<uint64>(extent) : static_cast<uint64>(extent);
        negative = negative != (extent < 0);
        if (count == 0 || magnitude == 0) {
            return 0;
        }
        if (magnitude > kMostBytes / count) {
            fits = false;  // but a later extent of 0 still makes the tensor empty
        } else {
            count *= magnitude;
        }
    }
    if (!fits) {
        return std::nullopt;
    }
    const auto bytes = static_cast<int64>(count);
    return negative ? -bytes : bytes;
}

std::size_t byteCountToAllocate(DataType type, const TensorShape& shape) noexcept {
    const std::optional<int64> count = exactByteCount(type, shape);
    return count.has_value() && *count >= 0 ? static_cast<std::size_t>(*count) : kMoreThanAvailable;
}

}  // namespace VelmoraQuavin::internal
