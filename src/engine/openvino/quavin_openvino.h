#pragma once

#include <inference_engine.hpp>
#include <memory>
#include <string>
#include <vector>

#include "engine/openvino/input_blobs.h"
#include "engine/openvino/network_settings.h"
#include "engine/openvino/output_blobs.h"
#include "model/engine_model.h"
#include "quavin/engine_options.h"
#include "quavin/model.h"

namespace VelmoraQuavin {

namespace internal {
class CachedNetwork;
}

/// A model for the OpenVINO engine: a network read from two files, and one inference request.
///
/// Unloading releases the reader and the metadata. The request, the compiled network with its
/// weights and the core stay until the model is destroyed.
class QuavinOpenVino : public QuavinModel, public internal::EngineModel {
public:
    /// @param name the model's name.
    /// @param device not used.
    /// @param options how the network computes.
    /// @throws std::exception if the engine cannot start.
    QuavinOpenVino(const String& name, const Device& device, const EngineOptions& options);
    /// A model that will share a network with another, and the other's core. Its own loads do not
    /// change that core: they get a new one.
    QuavinOpenVino(const String& name, const EngineOptions& options, InferenceEngine::Core core);
    ~QuavinOpenVino() override;

    String getName() const override;
    EngineInfo engineInfo() const override;
    std::shared_ptr<QuavinModel> clone() const override;

protected:
    QuavinStatus predictImpl(const std::vector<std::shared_ptr<QuavinFeature>>& inputs,
                             std::vector<std::shared_ptr<QuavinFeature>>& outputs,
                             int option) const override;
    QuavinStatus loadImpl(const std::vector<ModelComponent>& components) override;
    QuavinStatus prepareImpl() override;
    QuavinStatus unloadImpl() override;
    void forgetNetwork() noexcept override;

private:
    // Loads the model from the cache, if that has its network.
    bool takeCached(internal::CachedNetwork& cached, const String& package) noexcept;
    // Loads the model over a network that is compiled already.
    QuavinStatus takeCompiled(const InferenceEngine::ExecutableNetwork& network,
                              const String& package);
    // Whether predictions asked for other precisions than the network was compiled for.
    bool asksForOtherPrecisions() const;
    QuavinStatus openRequest(const String& package);
    void setPorts(const InferenceEngine::InputsDataMap& inputs,
                  const InferenceEngine::OutputsDataMap& outputs);

    std::shared_ptr<InferenceEngine::ICNNNetReader> reader_;
    bool networkRead_ = false;
    bool cameCompiled_ = false;    // by the cache or another model; then there is no reader
    bool networkSecured_ = false;  // the engine's messages may then quote secret content
    const EngineOptions options_;
    InferenceEngine::Core core_;
    InferenceEngine::ExecutableNetwork network_;  // shared with clones
    InferenceEngine::InferRequest::Ptr inferRequest_;
    internal::NetworkSettings settings_;

    // Predictions set precisions and remember blobs. They are made one at a time.
    mutable internal::InputPorts inputs_;
    internal::OutputPorts outputs_;
};

}  // namespace VelmoraQuavin
