// A network as it was read, before it is loaded on a device.
#pragma once

#include <memory>

#include "ie/data.hpp"
#include "ie/release.hpp"

namespace InferenceEngine {

class ICNNNetReader;

/** A network that was read. Its inputs and outputs are shared with whoever asks for them. */
class ICNNNetwork : public details::IRelease {
public:
    using Ptr = std::shared_ptr<ICNNNetwork>;

    // The genuine interface fills a map that it is given, and promises to throw nothing: a process
    // that runs out of memory there ends. Whoever needs a copy makes it, and sees it fail.
    virtual const InputsDataMap& getInputsInfo() const noexcept = 0;
    virtual const OutputsDataMap& getOutputsInfo() const noexcept = 0;

protected:
    ~ICNNNetwork() override = default;
};

/** A handle on a network; copies share it. Always holds one. */
class CNNNetwork {
public:
    /** @throws details::InferenceEngineException "CNNNetwork was not initialized." for a null
     * network */
    explicit CNNNetwork(std::shared_ptr<ICNNNetwork> network);

    /** Takes the network of a reader, which it keeps alive.
     *  @throws details::InferenceEngineException as above, also for a reader that has none to give
     */
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
