#include <exception>
#include <string>

#include "core/diagnostics.h"
#include "engine/openvino/input_blobs.h"
#include "engine/openvino/output_blobs.h"
#include "engine/openvino/quavin_openvino.h"
#include "feature/descriptor_access.h"
#include "quavin/status.h"

namespace VelmoraQuavin {
namespace {

using internal::NamedBlobs;

const std::vector<ModelFeatureDescriptor>& declaredOutputs(const ModelTarget* target) {
    static const std::vector<ModelFeatureDescriptor> none;
    return target == nullptr ? none : target->outputs;
}

// A network without outputs is reported after inference, with its own message.
QuavinStatus checkOutputNames(const std::vector<ModelFeatureDescriptor>& declared,
                              const NamedBlobs& blobs) {
    for (const ModelFeatureDescriptor& descriptor : declared) {
        const String& name = internal::DescriptorAccess::name(descriptor);
        if (!blobs.empty() && internal::findBlob(blobs, name.view()) == nullptr) {
            return {MODEL_METADATA_ERROR, "The network has no output \"" + name + "\""};
        }
    }
    return {SUCCESS, ""};
}

// The message of the exception being handled.
std::string textOfException() {
    try {
        throw;
    } catch (const std::exception& exception) {
        return exception.what();
    } catch (...) {
        return "an exception without a message";
    }
}

void setBlobs(InferenceEngine::InferRequest& request, const NamedBlobs& blobs) {
    for (const internal::NamedBlob& named : blobs) {
        request.SetBlob(*named.name, named.blob);
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
    const InferenceEngine::InputsDataMap inputsInfo = network.getInputsInfo();
    NamedBlobs inputBlobs;
    QuavinStatus status = internal::makeInputBlobs(inputsInfo, inputs, inputBlobs);
    if (!status.ok()) {
        return status;
    }
    const InferenceEngine::OutputsDataMap outputsInfo = network.getOutputsInfo();
    const NamedBlobs outputBlobs = internal::makeOutputBlobs(outputsInfo, pools_);
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
        // The engine's own message is not passed on: hosts rely on this one.
        internal::diagnose([this] {
            return networkSecured_ ? "predict: the engine failed; its message is withheld because "
                                     "a component is secured and the message may quote it"
                                   : "predict: the engine failed: " + textOfException();
        });
        throw MLFrameworkException("Unknown/internal exception happened.");
    }
    return status;
}

}  // namespace VelmoraQuavin
