#pragma once

#include <string>

#include "quavin/tensor.h"

namespace VelmoraQuavin::internal {

/// Such as "float"; "none" for a type that no tensor has.
std::string dataTypeName(DataType type);
/// Such as "[1, 10]".
std::string shapeText(const TensorShape& shape);

}  // namespace VelmoraQuavin::internal
