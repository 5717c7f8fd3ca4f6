#include "loaded_network.hpp"

#include <algorithm>
#include <utility>

#include "failure.hpp"
#include "loaded_request.hpp"
#include "properties.hpp"
#include "runtime_call.hpp"

namespace InferenceEngine::runtime {

LoadedNetwork::LoadedNetwork(Handle<ov_compiled_model_t> model, std::vector<BoundPort> ports,
                             Blob::Ptr weights)
    : weights_(std::move(weights)), model_(std::move(model)), ports_(std::move(ports)) {
    // Stable, so that an input stays before the output of the same name.
    std::stable_sort(
        ports_.begin(), ports_.end(),
        [](const BoundPort& left, const BoundPort& right) { return left.name() < right.name(); });
}

StatusCode LoadedNetwork::CreateInferRequest(IInferRequest::Ptr& request,
                                             ResponseDesc* response) noexcept {
    return answer(response, [&] { request = makeRequest(); });
}

StatusCode LoadedNetwork::GetConfig(const std::string& name, Parameter& result,
                                    ResponseDesc* response) const noexcept {
    return answer(response, [&] { result = propertyOf(*model_, name); });
}

IInferRequest::Ptr LoadedNetwork::makeRequest() const {
    ov_infer_request_t* made = nullptr;
    check([&] { return ov_compiled_model_create_infer_request(model_.get(), &made); });
    Handle<ov_infer_request_t> handle(made);
    return details::shared_from_irelease(new LoadedRequest(std::move(handle), ports_, weights_));
}

}  // namespace InferenceEngine::runtime
