// A network that the runtime has compiled for a device.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "handles.hpp"
#include "ie/executable_network.hpp"
#include "loaded_port.hpp"

namespace InferenceEngine::runtime {

/** Shares the memory that the compiled model may keep reading: weights, or what was imported. */
class LoadedNetwork final : public IExecutableNetwork {
public:
    /** @param blob in the memory, what the model was imported from; empty if it was compiled */
    LoadedNetwork(Handle<ov_compiled_model_t> model, std::vector<LoadedPort> ports,
                  std::shared_ptr<const void> memory, std::string_view blob = {});
    ~LoadedNetwork() override = default;

    void Release() noexcept override { delete this; }
    StatusCode GetOutputsInfo(ConstOutputsDataMap& outputs,
                              ResponseDesc* response) const noexcept override;
    StatusCode GetInputsInfo(ConstInputsDataMap& inputs,
                             ResponseDesc* response) const noexcept override;
    StatusCode CreateInferRequest(IInferRequest::Ptr& request,
                                  ResponseDesc* response) noexcept override;
    StatusCode Export(std::ostream& networkModel, ResponseDesc* response) noexcept override;
    StatusCode GetConfig(const std::string& name, Parameter& result,
                         ResponseDesc* response) const noexcept override;

private:
    IInferRequest::Ptr makeRequest() const;

    // The compiled model reads from the memory, so it must be destroyed before it.
    std::shared_ptr<const void> memory_;
    std::string_view blob_;
    Handle<ov_compiled_model_t> model_;
    std::vector<LoadedPort> ports_;
};

}  // namespace InferenceEngine::runtime
