// A network that has been read but not yet loaded on a device.
#pragma once

#include <memory>

#include "ie/data.hpp"
#include "ie/release.hpp"

namespace InferenceEngine {

class ICNNNetReader;

/** A network that has been read. Its inputs and outputs are shared with its callers. */
class ICNNNetwork : public details::IRelease {
public:
    using Ptr = std::shared_ptr<ICNNNetwork>;

    // The original interface fills a map passed to it and is noexcept, so running out of memory
    // there terminates the process. Here callers make their own copy, and can handle its failure.
    virtual const InputsDataMap& getInputsInfo() const noexcept = 0;
    virtual const OutputsDataMap& getOutputsInfo() const noexcept = 0;

protected:
    ~ICNNNetwork() override = default;
};

/** A handle to a network; never empty. Copies share the network. */
class CNNNetwork {
public:
    /** @throws details::InferenceEngineException "CNNNetwork was not initialized." for a null
     * network */
    explicit CNNNetwork(std::shared_ptr<ICNNNetwork> network);

    /** Takes the network of a reader, and keeps the reader alive.
     *  @throws details::InferenceEngineException as above, also if the reader has no network */
    explicit CNNNetwork(std::shared_ptr<ICNNNetReader> reader);

    /** @throws std::bad_alloc */
    InputsDataMap getInputsInfo() const;
    /** @throws std::bad_alloc */
    OutputsDataMap getOutputsInfo() const;

    operator ICNNNetwork&() { return *network_; }
    operator const ICNNNetwork&() const { return *network_; }

private:
    std::shared_ptr<ICNNNetwork> network_;
};

}  // namespace InferenceEngine
