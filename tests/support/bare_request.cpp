// An ExecutableNetwork that returns a wrapper with no request inside, or no wrapper at all. The
// interface's own class throws instead, but other releases need not.

#include <memory>
#include <utility>

#include "support/faulty_engine.h"

namespace InferenceEngine {

ExecutableNetwork::ExecutableNetwork(IExecutableNetwork::Ptr network)
    : network_(std::move(network)) {}

InferRequest::Ptr ExecutableNetwork::CreateInferRequestPtr() {
    return VelmoraQuavin::testing::faultyEngine().hasRequest ? std::make_shared<InferRequest>()
                                                             : nullptr;
}

ConstOutputsDataMap ExecutableNetwork::GetOutputsInfo() const {
    return {};
}

ConstInputsDataMap ExecutableNetwork::GetInputsInfo() const {
    return {};
}

void ExecutableNetwork::Export(std::ostream& /*networkModel*/) {
    throw NotImplemented("Export");
}

Parameter ExecutableNetwork::GetConfig(const std::string& /*name*/) const {
    return {};
}

}  // namespace InferenceEngine
