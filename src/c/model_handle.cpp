#include "c/model_handle.h"

#include <utility>

namespace VelmoraQuavin::internal {

ModelHandle::ModelHandle(std::shared_ptr<QuavinModel> model)
    : ModelHandle(model, model->getTargetMetadata()) {}

ModelHandle::ModelHandle(std::shared_ptr<QuavinModel> model, const ModelTarget& target)
    : model_(std::move(model)),
      name_(model_->getName().str()),
      inputs_(portsOf(target.inputs)),
      outputs_(portsOf(target.outputs)),
      features_(inputs_) {
    // A model that is unloaded or failed to load may have none.
    if (const std::shared_ptr<ModelMetadata> metadata = model_->getMetadata()) {
        id_ = metadata->getId().str();
        author_ = metadata->getAuthor().str();
        description_ = metadata->getDescription().str();
        sdkVersion_ = metadata->getSdkVersion().str();
        version_ = metadata->getVersion();
    }
}

quavin_metadata ModelHandle::metadata() const {
    quavin_metadata plain{};
    plain.id = id_.c_str();
    plain.name = name_.c_str();
    plain.author = author_.c_str();
    plain.description = description_.c_str();
    plain.sdk_version = sdkVersion_.c_str();
    plain.version = version_;
    return plain;
}

}  // namespace VelmoraQuavin::internal
