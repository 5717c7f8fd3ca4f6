#pragma once

#include <inference_engine.hpp>

#include "quavin/tensor.h"

namespace VelmoraQuavin::internal {

/// The element type of a blob; DataType::UNDEFINED for every precision that the library has no
/// tensors of. Not the inverse of toPrecision().
DataType toDataType(const InferenceEngine::Precision& precision);

/// The precision of an input that is declared with an element type; UNSPECIFIED for those that the
/// engine does not take.
/// @throws InvalidTensorDataTypeException for bool and double.
InferenceEngine::Precision toPrecision(DataType type);

}  // namespace VelmoraQuavin::internal
