#pragma once

#include <inference_engine.hpp>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "engine/openvino/network_component.h"
#include "engine/openvino/output_blobs.h"
#include "quavin/model.h"

namespace VelmoraQuavin {

/// A model of the OpenVINO engine: a network read from two files and one inference request.
///
/// Unloading releases the network but keeps the request and the core, which go with the model.
class QuavinOpenVino : public QuavinModel {
public:
    /// @param name the model's name.
    /// @param device not consulted.
    /// @throws std::exception where the engine cannot start.
    QuavinOpenVino(const String& name, const Device& device);
    ~QuavinOpenVino() override;

    String getName() const override;

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
    InferenceEngine::Core core_;
    InferenceEngine::InferRequest::Ptr inferRequest_;

    internal::OutputPools pools_;
};

}  // namespace VelmoraQuavin
