// A network that the runtime has compiled for a device.
#pragma once

#include <string>
#include <vector>

#include "bound_port.hpp"
#include "handles.hpp"
#include "ie/blob.hpp"
#include "ie/executable_network.hpp"

namespace InferenceEngine::runtime {

/** Shares the weights, which the compiled model may keep reading. */
class LoadedNetwork final : public IExecutableNetwork {
public:
    LoadedNetwork(Handle<ov_compiled_model_t> model, std::vector<BoundPort> ports,
                  Blob::Ptr weights);
    ~LoadedNetwork() override = default;

    void Release() noexcept override { delete this; }
    StatusCode CreateInferRequest(IInferRequest::Ptr& request,
                                  ResponseDesc* response) noexcept override;
    StatusCode GetConfig(const std::string& name, Parameter& result,
                         ResponseDesc* response) const noexcept override;

private:
    IInferRequest::Ptr makeRequest() const;

    // The compiled model reads from the weights, so it must be destroyed before them.
    Blob::Ptr weights_;
    Handle<ov_compiled_model_t> model_;
    std::vector<BoundPort> ports_;
};

}  // namespace InferenceEngine::runtime
