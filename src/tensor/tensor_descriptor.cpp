#include <utility>

#include "quavin/tensor.h"
#include "tensor/variable_shape.h"

namespace VelmoraQuavin {

TensorDescriptor::TensorDescriptor() = default;

TensorDescriptor::TensorDescriptor(const TensorShape& shape, DataType tensorType)
    : shape_(shape), tensorType_(tensorType) {}

TensorDescriptor::TensorDescriptor(String name, const TensorShape& shape, bool variableShape,
                                   DataType tensorType)
    : name_(std::move(name)),
      shape_(shape),
      variableShape_(variableShape),
      tensorType_(tensorType) {}

bool TensorDescriptor::variableShape() const {
    for (uint64 index = 0; index < shape_.dimension(); ++index) {
        if (shape_[index] == internal::kVariableDimension) {
            return true;
        }
    }
    return false;
}

TensorShape TensorDescriptor::shape() const {
    internal::requireFixedShape(*this);
    return shape_;
}

}  // namespace VelmoraQuavin
