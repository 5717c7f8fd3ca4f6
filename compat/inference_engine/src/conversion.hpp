// Conversions of element types at the edges of a model.
#pragma once

#include <vector>

#include "handles.hpp"
#include "ports.hpp"

namespace InferenceEngine::runtime {

/** The element type that a port should have. */
struct PortType {
    Direction direction = Direction::Input;
    std::size_t index = 0;
    ov_element_type_e type = ::DYNAMIC;
};

/** Inserts conversions before the inputs and after the outputs of the model, changing it in place.
 */
void convertPorts(Handle<ov_model_t>& model, const std::vector<PortType>& wanted);

}  // namespace InferenceEngine::runtime
