// A network that the runtime has read.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "handles.hpp"
#include "ie/network.hpp"
#include "ie/typed_blob.hpp"
#include "loaded_network.hpp"
#include "ports.hpp"

namespace InferenceEngine::runtime {

/**
 * Holds the model and shares the weights that the model reads from. The runtime can put conversions
 * into a model but neither take them out nor copy it, so a model remembers every precision it was
 * loaded with.
 */
class RuntimeNetwork final : public ICNNNetwork {
public:
    /** Takes the model over, and its element types to those that its ports are shown with. */
    RuntimeNetwork(Handle<ov_model_t> model, Blob::Ptr weights, const Topology& topology);
    ~RuntimeNetwork() override = default;

    void Release() noexcept override { delete this; }
    const InputsDataMap& getInputsInfo() const noexcept override { return inputs_; }
    const OutputsDataMap& getOutputsInfo() const noexcept override { return outputs_; }

    /**
     * Compiles the model with the precisions that its ports are set to now.
     *
     * @throws Failure for a precision that can't be loaded, and for what the runtime refuses
     */
    std::shared_ptr<LoadedNetwork> load(ov_core_t& core, const std::string& device,
                                        const std::map<std::string, std::string>& config);

private:
    /** A port with the precision it was read with and the one that the model has now. */
    struct NetworkPort {
        Port port;
        DataPtr data;
        Precision shown;
        Precision current;
    };

    /** Whether conversions put around those that are there give what the wanted ones alone would.
     */
    static bool canBecome(const NetworkPort& port, Precision wanted);
    void takePrecisions();

    // The model reads from the weights, so it goes first.
    Blob::Ptr weights_;
    Handle<ov_model_t> model_;
    std::vector<NetworkPort> ports_;
    InputsDataMap inputs_;
    OutputsDataMap outputs_;
};

}  // namespace InferenceEngine::runtime
