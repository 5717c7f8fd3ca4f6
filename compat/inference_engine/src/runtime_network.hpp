// A network read by the runtime.
#pragma once

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
 * Holds the model and shares the weights that the model reads from. The runtime can insert
 * conversions into a model, but can neither remove them nor copy the model, so conversions for
 * every precision that a network was loaded with accumulate.
 */
class RuntimeNetwork final : public ICNNNetwork {
public:
    /** Takes the model over and converts its ports to the element types they are shown with. */
    RuntimeNetwork(Handle<ov_model_t> model, Blob::Ptr weights, const Topology& topology);
    ~RuntimeNetwork() override = default;

    void Release() noexcept override { delete this; }
    const InputsDataMap& getInputsInfo() const noexcept override { return inputs_; }
    const OutputsDataMap& getOutputsInfo() const noexcept override { return outputs_; }

    /**
     * Compiles the model with the precisions that its ports are currently set to.
     *
     * @throws Failure if a precision can't be loaded or the runtime refuses the model
     */
    std::shared_ptr<LoadedNetwork> load(ov_core_t& core, const std::string& device);

private:
    /** A port with the precision it was first shown with and the model's current one. */
    struct NetworkPort {
        Port port;
        DataPtr data;
        Precision shown;
        Precision current;
    };

    /** Whether adding conversions around the existing ones gives the same result as the wanted ones
     * alone. */
    static bool canBecome(const NetworkPort& port, Precision wanted);
    void takePrecisions();

    // The model reads from the weights, so it must be destroyed before them.
    Blob::Ptr weights_;
    Handle<ov_model_t> model_;
    std::vector<NetworkPort> ports_;
    InputsDataMap inputs_;
    OutputsDataMap outputs_;
};

}  // namespace InferenceEngine::runtime
