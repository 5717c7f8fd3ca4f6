#include <utility>

#include "quavin/feature.h"

namespace VelmoraQuavin {
namespace {

// TensorDescriptor::shape() refuses a variable shape with the message that hosts know.
std::shared_ptr<ITensor> makeTensor(const TensorDescriptor& descriptor) {
    return std::make_shared<Tensor>(descriptor.tensorType(), descriptor.shape());
}

}  // namespace

IQuavinFeatureTensor::IQuavinFeatureTensor(ModelFeatureDescriptor descriptor)
    : QuavinFeature(std::move(descriptor)) {}

IQuavinFeatureTensor::~IQuavinFeatureTensor() = default;

QuavinFeatureTensor::QuavinFeatureTensor(const ModelFeatureDescriptor& descriptor)
    : QuavinFeatureTensor(descriptor, makeTensor(descriptor.tensorDescriptor())) {}

QuavinFeatureTensor::QuavinFeatureTensor(ModelFeatureDescriptor descriptor,
                                         std::shared_ptr<ITensor> tensor)
    : IQuavinFeatureTensor(std::move(descriptor)), tensor_(std::move(tensor)) {}

QuavinFeatureTensor::~QuavinFeatureTensor() = default;

}  // namespace VelmoraQuavin
