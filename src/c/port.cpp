#include "c/port.h"

namespace VelmoraQuavin::internal {
namespace {

static_assert(QUAVIN_FEATURE_BOOL == static_cast<int>(QuavinFeatureType::BOOL));
static_assert(QUAVIN_FEATURE_UINT8 == static_cast<int>(QuavinFeatureType::UINT8));
static_assert(QUAVIN_FEATURE_INT64 == static_cast<int>(QuavinFeatureType::INT64));
static_assert(QUAVIN_FEATURE_DOUBLE == static_cast<int>(QuavinFeatureType::DOUBLE));
static_assert(QUAVIN_FEATURE_STRING == static_cast<int>(QuavinFeatureType::STRING));
static_assert(QUAVIN_FEATURE_TENSOR == static_cast<int>(QuavinFeatureType::TENSOR));
static_assert(QUAVIN_FEATURE_IMAGE == static_cast<int>(QuavinFeatureType::IMAGE));

static_assert(QUAVIN_TYPE_UNDEFINED == static_cast<int>(DataType::UNDEFINED));
static_assert(QUAVIN_TYPE_BOOL == static_cast<int>(DataType::BOOL));
static_assert(QUAVIN_TYPE_INT8 == static_cast<int>(DataType::INT8));
static_assert(QUAVIN_TYPE_UINT8 == static_cast<int>(DataType::UINT8));
static_assert(QUAVIN_TYPE_INT16 == static_cast<int>(DataType::INT16));
static_assert(QUAVIN_TYPE_UINT16 == static_cast<int>(DataType::UINT16));
static_assert(QUAVIN_TYPE_INT32 == static_cast<int>(DataType::INT32));
static_assert(QUAVIN_TYPE_UINT32 == static_cast<int>(DataType::UINT32));
static_assert(QUAVIN_TYPE_INT64 == static_cast<int>(DataType::INT64));
static_assert(QUAVIN_TYPE_UINT64 == static_cast<int>(DataType::UINT64));
static_assert(QUAVIN_TYPE_FLOAT16 == static_cast<int>(DataType::FLOAT16));
static_assert(QUAVIN_TYPE_FLOAT == static_cast<int>(DataType::FLOAT));
static_assert(QUAVIN_TYPE_DOUBLE == static_cast<int>(DataType::DOUBLE));

// Only a tensor without memory tells its bytes without allocating them.
std::size_t bytesOf(DataType type, const TensorShape& shape) {
    const int64 bytes = BufferWrappedTensor(type, shape, nullptr, 0).bytes();
    return bytes < 0 ? 0 : static_cast<std::size_t>(bytes);
}

}  // namespace

Port::Port(const ModelFeatureDescriptor& descriptor)
    : descriptor_(descriptor),
      name_(descriptor.name().str()),
      description_(descriptor.description().str()) {
    if (isTensor()) {
        const TensorDescriptor& tensor = descriptor.tensorDescriptor();
        dims_ = tensor.declaredShape().shapeVector();
        bytes_ = isVariable() ? 0 : bytesOf(tensor.tensorType(), tensor.shape());
    }
}

quavin_port Port::plain() const {
    quavin_port port{};
    port.name = name_.c_str();
    port.description = description_.c_str();
    port.dims = dims_.data();
    port.rank = dims_.size();
    port.bytes = bytes_;
    port.kind = static_cast<int32_t>(descriptor_.type());
    port.element_type = static_cast<int32_t>(descriptor_.tensorDescriptor().tensorType());
    port.required = descriptor_.required() ? 1 : 0;
    return port;
}

Ports portsOf(const std::vector<ModelFeatureDescriptor>& descriptors) {
    return {descriptors.begin(), descriptors.end()};
}

std::size_t elementBytes(DataType type) {
    return bytesOf(type, TensorShape());
}

}  // namespace VelmoraQuavin::internal
