#include "quavin/model.h"

#include <utility>

#include "core/diagnostics.h"
#include "feature/descriptor_access.h"
#include "model/engine_model.h"
#include "tensor/tensor_texts.h"

namespace VelmoraQuavin {
namespace {

std::shared_ptr<QuavinFeature> makeTensorFeature(const ModelFeatureDescriptor& descriptor) {
    const TensorDescriptor& tensor = descriptor.tensorDescriptor();
    if (tensor.variableShape()) {
        return std::make_shared<QuavinFeatureTensor>(descriptor,
                                                     std::make_shared<Tensor>(tensor.tensorType()));
    }
    return std::make_shared<QuavinFeatureTensor>(descriptor);
}

std::shared_ptr<QuavinFeature> makeFeature(const ModelFeatureDescriptor& descriptor) {
    switch (descriptor.type()) {
        case QuavinFeatureType::BOOL:
            return std::make_shared<QuavinFeatureBool>(descriptor);
        case QuavinFeatureType::UINT8:
            return std::make_shared<QuavinFeatureUInt8>(descriptor);
        case QuavinFeatureType::INT64:
            return std::make_shared<QuavinFeatureInt64>(descriptor);
        case QuavinFeatureType::DOUBLE:
            return std::make_shared<QuavinFeatureDouble>(descriptor);
        case QuavinFeatureType::STRING:
            return std::make_shared<QuavinFeatureString>(descriptor);
        case QuavinFeatureType::TENSOR:
            return makeTensorFeature(descriptor);
        case QuavinFeatureType::IMAGE:
            break;
    }
    throw InvalidTypeException("Undefined feature type for allocating inputs");
}

void diagnoseAllocation(const ModelFeatureDescriptor& input) {
    internal::diagnose([&] {
        using internal::DescriptorAccess;
        String text = "allocateInputs: input " + internal::inQuotes(DescriptorAccess::name(input));
        if (input.type() != QuavinFeatureType::TENSOR) {
            return text + " has the feature type " + GetQuavinFeatureTypeName(input.type());
        }
        const TensorDescriptor& tensor = input.tensorDescriptor();
        return text + " is declared as " + internal::dataTypeName(tensor.tensorType()) + " " +
               internal::shapeText(DescriptorAccess::shape(tensor));
    });
}

}  // namespace

QuavinModel::QuavinModel(const String& name, Device* device)
    : QuavinModel(name, device == nullptr ? QuavinModelType::Undefined : device->engineType) {}

QuavinModel::QuavinModel(const String& name, QuavinModelType type)
    : name_(name), modelType_(type) {}

QuavinModel::~QuavinModel() = default;

String QuavinModel::getName() const {
    return name_;
}

QuavinStatus QuavinModel::predict(const std::vector<std::shared_ptr<QuavinFeature>>& inputs,
                                  std::vector<std::shared_ptr<QuavinFeature>>& outputs,
                                  int option) const {
    return predictImpl(inputs, outputs, option);
}

QuavinStatus QuavinModel::prepareImpl() {
    return {SUCCESS, ""};
}

const ModelTarget* QuavinModel::findTarget() const {
    if (metadata_ == nullptr) {
        return nullptr;
    }
    const ModelMetadata& metadata = *metadata_;
    const auto target = metadata.getTargets().find(modelType_);
    return target == metadata.getTargets().end() ? nullptr : &target->second;
}

ModelTarget QuavinModel::getTargetMetadata() const {
    const ModelTarget* target = findTarget();
    return target == nullptr ? ModelTarget() : *target;
}

QuavinStatus QuavinModel::allocateInputs(std::vector<std::shared_ptr<QuavinFeature>>& features) {
    const ModelFeatureDescriptor* current = nullptr;
    try {
        if (metadata_ == nullptr) {
            return {MODEL_NOT_LOADED, internal::kNoModelLoaded};
        }
        if (const ModelTarget* target = findTarget()) {
            for (const ModelFeatureDescriptor& descriptor : target->inputs) {
                current = &descriptor;
                features.push_back(makeFeature(descriptor));
            }
        }
        return {SUCCESS, ""};
    } catch (...) {
        if (current != nullptr) {
            diagnoseAllocation(*current);
        }
        return getStatusFromCurrentException();
    }
}

QuavinStatus QuavinModel::getEngineInfo(EngineInfo& info) const {
    try {
        if (!loaded_) {
            return {MODEL_NOT_LOADED, internal::kNoModelLoaded};
        }
        const auto* const model = dynamic_cast<const internal::EngineModel*>(this);
        if (model == nullptr) {
            return {FAILURE, "The model does not report what it runs on"};
        }
        info = model->engineInfo();
        return {SUCCESS, ""};
    } catch (...) {
        return getStatusFromCurrentException();
    }
}

}  // namespace VelmoraQuavin
