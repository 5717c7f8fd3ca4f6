#include <utility>

#include "quavin/feature.h"

namespace VelmoraQuavin {
namespace {

constexpr auto kTypeNotSet = static_cast<QuavinFeatureType>(7);

}  // namespace

// Unless told otherwise, a feature with an image or tensor descriptor is optional and any other is
// required: hosts rely on it.
ModelFeatureDescriptor::ModelFeatureDescriptor() : ModelFeatureDescriptor(kTypeNotSet) {}

ModelFeatureDescriptor::ModelFeatureDescriptor(QuavinFeatureType type)
    : type_(type), required_(true) {}

ModelFeatureDescriptor::ModelFeatureDescriptor(QuavinFeatureType type,
                                               ImageDescriptor imageDescriptor)
    : type_(type), required_(false), imageDescriptor_(imageDescriptor) {}

ModelFeatureDescriptor::ModelFeatureDescriptor(QuavinFeatureType type,
                                               TensorDescriptor tensorDescriptor)
    : type_(type), required_(false), tensorDescriptor_(std::move(tensorDescriptor)) {}

ModelFeatureDescriptor::ModelFeatureDescriptor(QuavinFeatureType type, bool required, String name,
                                               String description,
                                               TensorDescriptor tensorDescriptor,
                                               ImageDescriptor imageDescriptor)
    : type_(type),
      required_(required),
      name_(std::move(name)),
      description_(std::move(description)),
      tensorDescriptor_(std::move(tensorDescriptor)),
      imageDescriptor_(imageDescriptor) {}

}  // namespace VelmoraQuavin
