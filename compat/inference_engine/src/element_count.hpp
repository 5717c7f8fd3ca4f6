// The number of elements of a blob or port, whatever its dimensions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "ie/common.hpp"

namespace InferenceEngine {

/**
 * The product of dimensions; nothing if memory can't hold that many elements of the widest type,
 * so that no size in bytes overflows.
 */
inline std::optional<std::size_t> countElements(const SizeVector& dims) {
    constexpr std::size_t kMostElements = PTRDIFF_MAX / sizeof(std::int64_t);
    std::size_t elements = 1;
    for (const std::size_t dim : dims) {
        if (dim != 0 && elements > kMostElements / dim) {
            return std::nullopt;
        }
        elements *= dim;
    }
    return elements;
}

}  // namespace InferenceEngine
