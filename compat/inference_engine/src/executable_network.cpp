#include "ie/executable_network.hpp"

#include <utility>

#include "ie/exception.hpp"

namespace InferenceEngine {
namespace {

/** Makes a call of the network, and throws the exception for its status. */
template <class Call>
void require(const Call& call) {
    ResponseDesc response;
    const StatusCode status = call(&response);
    if (status != OK) {
        details::extract_exception(status, response.msg);
    }
}

}  // namespace

ExecutableNetwork::ExecutableNetwork(IExecutableNetwork::Ptr network)
    : network_(std::move(network)) {}

ConstOutputsDataMap ExecutableNetwork::GetOutputsInfo() const {
    ConstOutputsDataMap outputs;
    require([&](ResponseDesc* response) { return network().GetOutputsInfo(outputs, response); });
    return outputs;
}

ConstInputsDataMap ExecutableNetwork::GetInputsInfo() const {
    ConstInputsDataMap inputs;
    require([&](ResponseDesc* response) { return network().GetInputsInfo(inputs, response); });
    return inputs;
}

InferRequest::Ptr ExecutableNetwork::CreateInferRequestPtr() {
    IInferRequest::Ptr request;
    require(
        [&](ResponseDesc* response) { return network().CreateInferRequest(request, response); });
    if (!request) {
        throw details::InferenceEngineException("Internal error: pointer to infer request is null");
    }
    return std::make_shared<InferRequest>(std::move(request));
}

void ExecutableNetwork::Export(std::ostream& networkModel) {
    require([&](ResponseDesc* response) { return network().Export(networkModel, response); });
}

Parameter ExecutableNetwork::GetConfig(const std::string& name) const {
    Parameter value;
    require([&](ResponseDesc* response) { return network().GetConfig(name, value, response); });
    return value;
}

IExecutableNetwork& ExecutableNetwork::network() const {
    if (!network_) {
        throw details::InferenceEngineException("ExecutableNetwork was not initialized.");
    }
    return *network_;
}

}  // namespace InferenceEngine
