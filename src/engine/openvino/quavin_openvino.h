#pragma once

#include <inference_engine.hpp>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "engine/openvino/network_settings.h"
#include "engine/openvino/output_blobs.h"
#include "model/engine_info_source.h"
#include "quavin/engine_options.h"
#include "quavin/model.h"

namespace VelmoraQuavin {

/// A model for the OpenVINO engine: a network read from two files, and one inference request.
///
/// Unloading releases the reader and the metadata. The request and the core stay until the model is
/// destroyed, and with them the compiled network and its weights.
class QuavinOpenVino : public QuavinModel, public internal::EngineInfoSource {
public:
    /// @param name the model's name.
    /// @param device not used.
    /// @param options how the network computes.
    /// @throws std::exception if the engine cannot start.
    QuavinOpenVino(const String& name, const Device& device, const EngineOptions& options);
    ~QuavinOpenVino() override;

    String getName() const override;
    EngineInfo engineInfo() const override;

protected:
    QuavinStatus predictImpl(const std::vector<std::shared_ptr<QuavinFeature>>& inputs,
                             std::vector<std::shared_ptr<QuavinFeature>>& outputs,
                             int option) const override;
    QuavinStatus loadImpl(const std::vector<ModelComponent>& components) override;
    QuavinStatus prepareImpl() override;
    QuavinStatus unloadImpl() override;

private:
    void openPools(const InferenceEngine::OutputsDataMap& outputsInfo);
    void closePools() noexcept;

    std::shared_ptr<InferenceEngine::ICNNNetReader> reader_;
    bool networkRead_ = false;
    bool networkSecured_ = false;  // the engine's messages may then quote secret content
    const EngineOptions options_;
    InferenceEngine::Core core_;
    InferenceEngine::InferRequest::Ptr inferRequest_;
    internal::NetworkSettings settings_;

    internal::OutputPools pools_;
};

}  // namespace VelmoraQuavin
