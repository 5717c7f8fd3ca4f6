#include "engine/openvino/input_blobs.h"
#include "engine/openvino/output_blobs.h"
#include "engine/openvino/quavin_openvino.h"
#include "feature/descriptor_access.h"
#include "quavin/status.h"

namespace VelmoraQuavin {
namespace {

using InferenceEngine::BlobMap;

const std::vector<ModelFeatureDescriptor>& declaredOutputs(const ModelTarget* target) {
    static const std::vector<ModelFeatureDescriptor> none;
    return target == nullptr ? none : target->outputs;
}

// A network without outputs is told of after the inference, in words of its own.
QuavinStatus checkOutputNames(const std::vector<ModelFeatureDescriptor>& declared,
                              const BlobMap& blobs) {
    for (const ModelFeatureDescriptor& descriptor : declared) {
        const String& name = internal::DescriptorAccess::name(descriptor);
        if (!blobs.empty() && blobs.count(name.str()) == 0) {
            return {MODEL_METADATA_ERROR, "The network has no output \"" + name + "\""};
        }
    }
    return {SUCCESS, ""};
}

void setBlobs(InferenceEngine::InferRequest& request, const BlobMap& blobs) {
    for (const auto& [name, blob] : blobs) {
        request.SetBlob(name, blob);
    }
}

}  // namespace

QuavinStatus QuavinOpenVino::predictImpl(const std::vector<std::shared_ptr<QuavinFeature>>& inputs,
                                         std::vector<std::shared_ptr<QuavinFeature>>& outputs,
                                         int /*option*/) const {
    if (!isLoaded() || reader_ == nullptr || inferRequest_ == nullptr) {
        return {MODEL_NOT_LOADED, "There is no model loaded"};
    }
    const InferenceEngine::CNNNetwork network(reader_);
    BlobMap inputBlobs;
    QuavinStatus status = internal::makeInputBlobs(network.getInputsInfo(), inputs, inputBlobs);
    if (!status.ok()) {
        return status;
    }
    const BlobMap outputBlobs = internal::makeOutputBlobs(network.getOutputsInfo(), pools_);
    const std::vector<ModelFeatureDescriptor>& declared = declaredOutputs(findTarget());
    status = checkOutputNames(declared, outputBlobs);
    if (!status.ok()) {
        return status;
    }
    try {
        setBlobs(*inferRequest_, inputBlobs);
        setBlobs(*inferRequest_, outputBlobs);
        inferRequest_->Infer();
        if (outputBlobs.empty()) {
            return {FAILURE, "Output info absent in model"};
        }
        internal::appendOutputFeatures(declared, outputBlobs, outputs);
    } catch (...) {
        // The engine's own text stays inside: hosts know this one.
        throw MLFrameworkException("Unknown/internal exception happened.");
    }
    return status;
}

}  // namespace VelmoraQuavin
