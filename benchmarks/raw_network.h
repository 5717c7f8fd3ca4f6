#pragma once

#include <openvino/c/openvino.h>

#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace benchmark {

template <auto release>
struct Release {
    template <typename Handle>
    void operator()(Handle* handle) const noexcept {
        release(handle);
    }
};
template <typename Handle, auto release>
using Owned = std::unique_ptr<Handle, Release<release>>;
using Tensor = Owned<ov_tensor_t, ov_tensor_free>;

/// What a host would write by hand on the runtime's C interface: reads model.xml and model.bin of a
/// folder, compiles the network for the CPU and predicts, with host memory for the inputs and new
/// output tensors for each call.
class RawNetwork {
public:
    /// Whether the runtime binds its threads to processors, as it does by default on Linux.
    enum class Pinning { kDefault, kOff };

    /// @param threads that a prediction runs on; 0 leaves the choice to the runtime.
    explicit RawNetwork(const std::string& folder, Pinning pinning = Pinning::kDefault,
                        int threads = 0);

    /// Runs the network once on all-zero inputs.
    /// @param kept how many outputs of the latest calls stay alive.
    void predict(std::size_t kept);

    /// Runs the network with what the last prediction bound.
    void infer();

    /// The compiled network, as the runtime exports it.
    std::string exported();
    /// Replaces the compiled network with an exported one. The runtime may read the bytes as long
    /// as this uses them.
    void import(const std::string& bytes);

    /// Makes another inference request over the compiled network for all later predictions. The
    /// earlier ones stay alive.
    void addRequest();

private:
    struct Port {
        ov_element_type_e type;
        std::vector<int64_t> dimensions;
        std::vector<unsigned char> memory;  // only for inputs
    };
    using PortAt = ov_status_e(const ov_model_t*, std::size_t, ov_output_const_port_t**);

    static Port describe(const ov_model_t* model, PortAt* portAt, std::size_t index);

    Tensor weights_;
    Owned<ov_core_t, ov_core_free> core_;
    Owned<ov_compiled_model_t, ov_compiled_model_free> compiled_;
    std::vector<Owned<ov_infer_request_t, ov_infer_request_free>> requests_;  // the last is used
    std::vector<Port> inputs_;
    std::vector<Port> outputs_;
    std::deque<Tensor> kept_;
};

}  // namespace benchmark
