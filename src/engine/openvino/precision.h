#pragma once

#include <inference_engine.hpp>

#include "quavin/tensor.h"

namespace VelmoraQuavin::internal {

/// The element type of a blob; DataType::UNDEFINED for every precision for which the library has no
/// tensors. Not the inverse of toPrecision().
DataType toDataType(const InferenceEngine::Precision& precision);

/// The precision of an input declared with an element type; UNSPECIFIED for types that the engine
/// does not support.
/// @throws InvalidTensorDataTypeException for bool and double.
InferenceEngine::Precision toPrecision(DataType type);

/// The extents of a blob or port, outermost first.
TensorShape shapeOf(const InferenceEngine::TensorDesc& description);

}  // namespace VelmoraQuavin::internal
