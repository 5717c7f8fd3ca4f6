#include <utility>
#include <vector>

#include "quavin/tensor.h"
#include "tensor/element_size.h"

namespace VelmoraQuavin {

ITensor::ITensor(DataType dataType) : dataType_(dataType) {}

ITensor::ITensor(DataType dataType, TensorShape shape)
    : dataType_(dataType), shape_(std::move(shape)) {}

ITensor::~ITensor() = default;

TensorShape ITensor::shape() const {
    return shape_;
}

DataType ITensor::dataType() const {
    return dataType_;
}

int64 ITensor::bytes() const {
    return internal::byteCount(dataType_, shape_);
}

QuavinStatus ITensor::resize(const TensorShape& newShape) {
    if (buffer() != nullptr) {
        if (internal::exactByteCount(dataType_, newShape) != bytes()) {
            return {TENSOR_SIZE_MISMATCH,
                    "Cannot resize a tensor because the new shape has different memory "
                    "requirements than the old shape."};
        }
    } else if (!allocate(internal::byteCountToAllocate(dataType_, newShape))) {
        return {ALLOCATION_FAILED, "Failed allocating a new buffer when resizing a tensor"};
    }
    shape_ = newShape;
    return {SUCCESS, ""};
}

TensorShape ITensor::stride() const {
    return getStrideFromShape(shape());
}

TensorShape ITensor::getStrideFromShape(const TensorShape& shape) {
    std::vector<int64> strides(shape.dimension());
    uint64 product = 1;
    for (uint64 index = shape.dimension(); index-- > 0;) {
        strides[index] = static_cast<int64>(product);
        product *= static_cast<uint64>(shape[index]);  // unsigned, since it may wrap
    }
    return strides;
}

}  // namespace VelmoraQuavin
