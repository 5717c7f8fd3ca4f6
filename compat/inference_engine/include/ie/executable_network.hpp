// A network loaded on a device.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>

#include "ie/common.hpp"
#include "ie/data.hpp"
#include "ie/infer_request.hpp"
#include "ie/parameter.hpp"
#include "ie/release.hpp"

namespace InferenceEngine {

/** A loaded network; its requests keep alive whatever parts of it they need. */
class IExecutableNetwork : public details::IRelease {
public:
    using Ptr = std::shared_ptr<IExecutableNetwork>;

    virtual StatusCode GetOutputsInfo(ConstOutputsDataMap& outputs,
                                      ResponseDesc* response) const noexcept = 0;
    virtual StatusCode GetInputsInfo(ConstInputsDataMap& inputs,
                                     ResponseDesc* response) const noexcept = 0;
    virtual StatusCode CreateInferRequest(IInferRequest::Ptr& request,
                                          ResponseDesc* response) noexcept = 0;
    virtual StatusCode Export(std::ostream& networkModel, ResponseDesc* response) noexcept = 0;
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

    /** The outputs with the precisions they were loaded with.
     *  @throws the exception for the status */
    ConstOutputsDataMap GetOutputsInfo() const;

    /** As above, for the inputs. */
    ConstInputsDataMap GetInputsInfo() const;

    /** @throws the exception for the status, or the general one if the device returns no request */
    InferRequest::Ptr CreateInferRequestPtr();

    /**
     * Writes the compiled network, for Core::ImportNetwork on the same machine. What is written
     * holds the weights, and is not protected in any way.
     *
     * @throws the exception for the status if the device can't export it or the stream fails
     */
    void Export(std::ostream& networkModel);

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
