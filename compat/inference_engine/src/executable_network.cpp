#include "ie/executable_network.hpp"

#include <utility>

#include "ie/exception.hpp"

namespace InferenceEngine {

ExecutableNetwork::ExecutableNetwork(IExecutableNetwork::Ptr network)
    : network_(std::move(network)) {}

ConstOutputsDataMap ExecutableNetwork::GetOutputsInfo() const {
    ConstOutputsDataMap outputs;
    ResponseDesc response;
    const StatusCode status = network().GetOutputsInfo(outputs, &response);
    if (status != OK) {
        details::extract_exception(status, response.msg);
    }
    return outputs;
}

ConstInputsDataMap ExecutableNetwork::GetInputsInfo() const {
    ConstInputsDataMap inputs;
    ResponseDesc response;
    const StatusCode status = network().GetInputsInfo(inputs, &response);
    if (status != OK) {
        details::extract_exception(status, response.msg);
    }
    return inputs;
}

InferRequest::Ptr ExecutableNetwork::CreateInferRequestPtr() {
    IInferRequest::Ptr request;
    ResponseDesc response;
    const StatusCode status = network().CreateInferRequest(request, &response);
    if (status != OK) {
        details::extract_exception(status, response.msg);
    }
    if (!request) {
        throw details::InferenceEngineException("Internal error: pointer to infer request is null");
    }
    return std::make_shared<InferRequest>(std::move(request));
}

void ExecutableNetwork::Export(std::ostream& networkModel) {
    ResponseDesc response;
    const StatusCode status = network().Export(networkModel, &response);
    if (status != OK) {
        details::extract_exception(status, response.msg);
    }
}

Parameter ExecutableNetwork::GetConfig(const std::string& name) const {
    Parameter value;
    ResponseDesc response;
    const StatusCode status = network().GetConfig(name, value, &response);
    if (status != OK) {
        details::extract_exception(status, response.msg);
    }
    return value;
}

IExecutableNetwork& ExecutableNetwork::network() const {
    if (!network_) {
        throw details::InferenceEngineException("ExecutableNetwork was not initialized.");
    }
    return *network_;
}

}  // namespace InferenceEngine
