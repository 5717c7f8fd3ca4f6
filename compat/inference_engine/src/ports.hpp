// The inputs and outputs of a model of the runtime, as the interface shows them.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "element_type.hpp"
#include "handles.hpp"
#include "ie/common.hpp"
#include "topology.hpp"

namespace InferenceEngine::runtime {

/** One input or output. */
struct Port {
    std::string name;
    // What the runtime calls its tensor: an output that shows an input itself has the input's.
    std::string tensor;
    Direction direction = Direction::Input;
    // Its place among the inputs or outputs of the model.
    std::size_t index = 0;
    ov_element_type_e type = ::DYNAMIC;
    SizeVector dims;
};

/** One of the names that the runtime knows the port by, always the same; empty if it has none. */
std::string anyName(const ov_output_const_port_t& port);

/**
 * The ports that are shown: inputs that reach an output, and each output name once.
 *
 * @throws Failure naming a port that has no name, dynamic dimensions or an element type without a
 * precision
 */
std::vector<Port> readPorts(const ov_model_t& model, const Topology& topology);

}  // namespace InferenceEngine::runtime
