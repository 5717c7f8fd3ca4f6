#include "ie/executable_network.hpp"

#include <utility>

#include "ie/exception.hpp"

namespace InferenceEngine {

ExecutableNetwork::ExecutableNetwork(IExecutableNetwork::Ptr network)
    : network_(std::move(network)) {}

InferRequest::Ptr ExecutableNetwork::CreateInferRequestPtr() {
    if (!network_) {
        throw details::InferenceEngineException("ExecutableNetwork was not initialized.");
    }
    IInferRequest::Ptr request;
    ResponseDesc response;
    const StatusCode status = network_->CreateInferRequest(request, &response);
    if (status != OK) {
        details::extract_exception(status, response.msg);
    }
    if (!request) {
        throw details::InferenceEngineException("Internal error: pointer to infer request is null");
    }
    return std::make_shared<InferRequest>(std::move(request));
}

}  // namespace InferenceEngine
