#include <cstddef>
#include <exception>
#include <string>

#include "core/diagnostics.h"
#include "engine/openvino/input_blobs.h"
#include "engine/openvino/output_blobs.h"
#include "engine/openvino/quavin_openvino.h"
#include "quavin/status.h"

namespace VelmoraQuavin {
namespace {

const std::vector<ModelFeatureDescriptor>& declaredOutputs(const ModelTarget* target) {
    static const std::vector<ModelFeatureDescriptor> none;
    return target == nullptr ? none : target->outputs;
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

void setBlobs(InferenceEngine::InferRequest& request, const internal::InputPorts& inputs,
              const internal::OutputPorts& outputs, const internal::OutputBlobs& outputBlobs) {
    for (const internal::InputPort& input : inputs) {
        request.SetBlob(input.name, input.blob);
    }
    for (std::size_t i = 0; i < outputs.size(); ++i) {
        request.SetBlob(outputs[i].name, outputBlobs[i]);
    }
}

}  // namespace

QuavinStatus QuavinOpenVino::predictImpl(const std::vector<std::shared_ptr<QuavinFeature>>& inputs,
                                         std::vector<std::shared_ptr<QuavinFeature>>& outputs,
                                         int /*option*/) const {
    if (!isLoaded() || inferRequest_ == nullptr) {
        return {MODEL_NOT_LOADED, internal::kNoModelLoaded};
    }
    QuavinStatus status = internal::setInputBlobs(inputs_, inputs);
    if (!status.ok()) {
        return status;
    }
    const internal::OutputBlobs outputBlobs = internal::makeOutputBlobs(outputs_);
    const std::vector<ModelFeatureDescriptor>& declared = declaredOutputs(findTarget());
    status = internal::checkOutputNames(declared, outputs_);
    if (!status.ok()) {
        return status;
    }
    try {
        setBlobs(*inferRequest_, inputs_, outputs_, outputBlobs);
        inferRequest_->Infer();
        if (outputs_.empty()) {
            return {FAILURE, "Output info absent in model"};
        }
        internal::appendOutputFeatures(declared, outputs_, outputBlobs, outputs);
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
