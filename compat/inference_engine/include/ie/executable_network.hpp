// A network loaded on a device.
#pragma once

#include <memory>

#include "ie/common.hpp"
#include "ie/infer_request.hpp"
#include "ie/release.hpp"

namespace InferenceEngine {

/** A loaded network; the requests made from it keep alive what they need of it. */
class IExecutableNetwork : public details::IRelease {
public:
    using Ptr = std::shared_ptr<IExecutableNetwork>;

    virtual StatusCode CreateInferRequest(IInferRequest::Ptr& request,
                                          ResponseDesc* response) noexcept = 0;

protected:
    ~IExecutableNetwork() override = default;
};

/** A handle on a loaded network, whose failures it throws; copies share it. */
class ExecutableNetwork {
public:
    ExecutableNetwork() = default;
    explicit ExecutableNetwork(IExecutableNetwork::Ptr network);

    /** @throws the exception of the status, or the general one where the device gave no request */
    InferRequest::Ptr CreateInferRequestPtr();

private:
    IExecutableNetwork::Ptr network_;
};

}  // namespace InferenceEngine
