#pragma once

#include <cstddef>
#include <optional>

#include "quavin/tensor.h"

namespace VelmoraQuavin::internal {

/// Bytes of one element; 0 for DataType::UNDEFINED and every number that is no type.
int64 elementSize(DataType type) noexcept;

/// The bytes of a tensor, in arithmetic that wraps: what ITensor::bytes() tells.
int64 byteCount(DataType type, const TensorShape& shape) noexcept;

/// The bytes of a tensor; nothing where they do not fit the type.
std::optional<int64> exactByteCount(DataType type, const TensorShape& shape) noexcept;

/// The bytes of a tensor as an amount of memory to ask for: more than can be had where the number
/// is negative or does not fit, so that asking fails in the ordinary way.
std::size_t byteCountToAllocate(DataType type, const TensorShape& shape) noexcept;

}  // namespace VelmoraQuavin::internal
