#include <optional>
#include <utility>

#include "core/diagnostics.h"
#include "feature/descriptor_access.h"
#include "model/engine_model.h"
#include "package/manifest/metadata_access.h"
#include "package/signature/trusted_keys.h"
#include "package/source/component_source.h"
#include "quavin/model.h"
#include "tensor/tensor_texts.h"

namespace VelmoraQuavin {
namespace {

void diagnoseFirstInput(const ModelFeatureDescriptor& input, const ModelMetadata& package) {
    internal::diagnose([&] {
        using internal::DescriptorAccess;
        return "loading the package " + internal::inQuotes(internal::packageTitle(package)) +
               ": its first input " + internal::inQuotes(DescriptorAccess::name(input)) +
               " has the shape " +
               internal::shapeText(DescriptorAccess::shape(input.tensorDescriptor()));
    });
}

// While it exists, the manifest of a load is one that a trusted key signed, if there are any.
class VerifiedLoad {
public:
    VerifiedLoad(QuavinModel& model, const ModelMetadata& metadata)
        : model_(dynamic_cast<internal::EngineModel*>(&model)) {
        if (model_ != nullptr) {
            model_->beginVerifiedLoad(metadata);
        } else {
            static_cast<void>(internal::makeComponentSource(metadata));
        }
    }
    VerifiedLoad(const VerifiedLoad&) = delete;
    VerifiedLoad& operator=(const VerifiedLoad&) = delete;
    ~VerifiedLoad() {
        if (model_ != nullptr) {
            model_->endVerifiedLoad();
        }
    }

private:
    internal::EngineModel* const model_;
};

}  // namespace

QuavinStatus QuavinModel::load(std::shared_ptr<ModelMetadata> metadata) {
    if (metadata == nullptr) {
        return {INVALID_ARGUMENTS, "There is no metadata to load a model from"};
    }
    metadata_ = std::move(metadata);
    return runLoadingSequence();
}

QuavinStatus QuavinModel::load(const Filepath& manifest) {
    if (metadata_ == nullptr) {
        return {INVALID_ARGUMENTS, "There is no metadata to read a manifest into"};
    }
    QuavinStatus status = metadata_->load(manifest);
    return status.ok() ? runLoadingSequence() : status;
}

void QuavinModel::releaseMetadata() {
    metadata_.reset();
    loaded_ = false;
}

void QuavinModel::copyLoaded(const QuavinModel& original) {
    metadata_ = std::make_shared<ModelMetadata>(*original.metadata_);
    loaded_ = true;
}

// Checks only the first input: an engine learns the rest from the network itself.
QuavinStatus QuavinModel::validateTarget() const {
    const ModelTarget* target = findTarget();
    if (target == nullptr || target->inputs.empty()) {
        return {MODEL_METADATA_ERROR, "There must be at least one defined input name"};
    }
    if (target->outputs.empty()) {
        return {MODEL_METADATA_ERROR, "There must be at least one defined output name"};
    }
    const ModelFeatureDescriptor& first = target->inputs.front();
    if (first.tensorDescriptor().variableShape()) {
        diagnoseFirstInput(first, *metadata_);  // the next line throws
    }
    if (first.tensorDescriptor().shape().size() < 1) {
        diagnoseFirstInput(first, *metadata_);
        return {MODEL_METADATA_ERROR, "The input shape has to be defined"};
    }
    return {SUCCESS, ""};
}

QuavinStatus QuavinModel::runLoadingSequence() {
    std::optional<VerifiedLoad> verified;
    if (metadata_ != nullptr && internal::areKeysTrusted()) {
        loaded_ = false;  // no prediction may follow what the manifest says before it is verified
        verified.emplace(*this, *metadata_);
    }
    QuavinStatus status = validateTarget();
    if (!status.ok()) {
        return status;
    }
    status = prepareImpl();
    if (!status.ok()) {
        return status;
    }
    // A copy: the hook may release the metadata that owns the target.
    const ModelTarget* target = findTarget();
    const std::vector<ModelComponent> components =
        target == nullptr ? std::vector<ModelComponent>() : target->components;
    if (components.empty()) {
        return {MODEL_METADATA_ERROR, "No model component found"};
    }
    loaded_ = false;  // and stays false if the hook throws
    status = loadImpl(components);
    loaded_ = status.ok();
    return status;
}

}  // namespace VelmoraQuavin
