// A network loaded on a device.
#pragma once

#include <memory>
#include <string>

#include "ie/common.hpp"
#include "ie/infer_request.hpp"
#include "ie/parameter.hpp"
#include "ie/release.hpp"

namespace InferenceEngine {

/** A loaded network; the requests made from it keep alive what they need of it. */
class IExecutableNetwork : public details::IRelease {
public:
    using Ptr = std::shared_ptr<IExecutableNetwork>;

    virtual StatusCode CreateInferRequest(IInferRequest::Ptr& request,
                                          ResponseDesc* response) noexcept = 0;
    virtual StatusCode GetConfig(const std::string& name, Parameter& result,
                                 ResponseDesc* response) const noexcept = 0;

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

    /**
     * A configuration value as the network was loaded with it.
     *
     * @throws the exception of the status, for a value that is not known
     */
    Parameter GetConfig(const std::string& name) const;

private:
    IExecutableNetwork& network() const;

    IExecutableNetwork::Ptr network_;
};

}  // namespace InferenceEngine
