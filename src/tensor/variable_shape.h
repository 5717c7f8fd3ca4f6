#pragma once

#include "quavin/tensor.h"

namespace VelmoraQuavin::internal {

/// A dimension that is not known until run time.
constexpr int64 kVariableDimension = -1;

/// @throws InvalidOperationException if the descriptor's shape is variable.
inline void requireFixedShape(const TensorDescriptor& descriptor) {
    if (descriptor.variableShape()) {
        throw InvalidOperationException(
            "Attempting to infer a tensor shape from a variable-shaped tensor.");
    }
}

}  // namespace VelmoraQuavin::internal
