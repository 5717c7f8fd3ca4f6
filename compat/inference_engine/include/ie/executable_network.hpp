// A network loaded on a device.
#pragma once

#include <memory>
#include <string>

#include "ie/common.hpp"
#include "ie/infer_request.hpp"
#include "ie/parameter.hpp"
#include "ie/release.hpp"

namespace InferenceEngine {

/** A loaded network; its requests keep alive whatever parts of it they need. */
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

/** A handle to a loaded network that throws its failures; copies share the network. */
class ExecutableNetwork {
public:
    ExecutableNetwork() = default;
    explicit ExecutableNetwork(IExecutableNetwork::Ptr network);

    /** @throws the exception for the status, or the general one if the device returns no request */
    InferRequest::Ptr CreateInferRequestPtr();

    /**
     * A configuration value that the network was loaded with.
     *
     * @throws the exception for the status if the value is unknown
     */
    Parameter GetConfig(const std::string& name) const;

private:
    IExecutableNetwork& network() const;

    IExecutableNetwork::Ptr network_;
};

}  // namespace InferenceEngine
