// The inputs and outputs of a runtime model, as shown by the interface.
#pragma once

#include <cstddef>
#include <cstdint>
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
    // The runtime's name for its tensor; an output that passes an input through has the input's.
    std::string tensor;
    Direction direction = Direction::Input;
    // Its position among the inputs or outputs of the model.
    std::size_t index = 0;
    ov_element_type_e type = ::DYNAMIC;
    SizeVector dims;
};

/** A port as messages name it: input "x". */
std::string describe(const Port& port);
std::string describe(Direction direction, const std::string& name);

/** One of the runtime's names for the port, always the same one; empty if it has none. */
std::string anyName(const ov_output_const_port_t& port);

/**
 * The dimensions of a port.
 *
 * @param description of the port, for messages
 * @throws Failure if they are dynamic or make for too many elements
 */
SizeVector readDims(const ov_output_const_port_t& port, const std::string& description);

/**
 * The ports to show: inputs that reach an output, and each output name once.
 *
 * @throws Failure, naming the port, if one has no name, dynamic dimensions or an element type
 * without a precision
 */
std::vector<Port> readPorts(const ov_model_t& model, const Topology& topology);

}  // namespace InferenceEngine::runtime
