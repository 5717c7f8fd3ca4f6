#pragma once

#include <cstddef>
#include <optional>

#include "quavin/tensor.h"

namespace VelmoraQuavin::internal {

/// Bytes of one element; 0 for DataType::UNDEFINED and every number that is not a type.
int64 elementSize(DataType type) noexcept;

/// The bytes of a tensor, in arithmetic that wraps: what ITensor::bytes() returns.
int64 byteCount(DataType type, const TensorShape& shape) noexcept;

/// The bytes of a tensor; nullopt if they do not fit in an int64.
std::optional<int64> exactByteCount(DataType type, const TensorShape& shape) noexcept;

/// The bytes of a tensor as an amount of memory to allocate: more than is available if the number
/// is negative or does not fit, so that allocation fails in the usual way.
std::size_t byteCountToAllocate(DataType type, const TensorShape& shape) noexcept;

}  // namespace VelmoraQuavin::internal
