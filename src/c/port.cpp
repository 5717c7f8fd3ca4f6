#include "c/port.h"

#include <algorithm>
#include <optional>

#include "tensor/element_size.h"

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

// 0 for more than there can be, which a hostile manifest may declare.
std::size_t bytesOf(const TensorDescriptor& tensor) {
    const auto bytes =
        tensor.variableShape() ? std::nullopt : exactByteCount(tensor.tensorType(), tensor.shape());
    return static_cast<std::size_t>(std::max(bytes.value_or(0), int64{0}));
}

}  // namespace

Port::Port(const ModelFeatureDescriptor& descriptor)
    : descriptor_(descriptor),
      name_(descriptor.name().str()),
      description_(descriptor.description().str()) {
    if (isTensor()) {
        const TensorDescriptor& tensor = descriptor.tensorDescriptor();
        dims_ = tensor.declaredShape().shapeVector();
        bytes_ = bytesOf(tensor);
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

}  // namespace VelmoraQuavin::internal
