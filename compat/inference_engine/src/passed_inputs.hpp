// Outputs that pass an input through unchanged.
#pragma once

#include <vector>

#include "handles.hpp"
#include "ports.hpp"

namespace InferenceEngine::runtime {

/**
 * Separates the tensors of outputs that pass an input through, by a detour through a wider type:
 * the runtime has a single tensor for both, so binding one would unbind the other.
 */
void separatePassedInputs(Handle<ov_model_t>& model, const std::vector<Port>& ports);

}  // namespace InferenceEngine::runtime
