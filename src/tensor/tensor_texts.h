#pragma once

#include <string>

#include "quavin/tensor.h"

namespace VelmoraQuavin::internal {

/// "float"; "none" for a type that no tensor has.
std::string dataTypeName(DataType type);
/// "[1, 10]".
std::string shapeText(const TensorShape& shape);

}  // namespace VelmoraQuavin::internal
