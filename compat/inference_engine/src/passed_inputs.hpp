// Outputs that show an input itself.
#pragma once

#include <vector>

#include "handles.hpp"
#include "ports.hpp"

namespace InferenceEngine::runtime {

/**
 * Gives outputs that show an input itself a tensor of their own, by a detour over a wider type: the
 * runtime has one tensor for both, so that binding the one would unbind the other.
 */
void separatePassedInputs(Handle<ov_model_t>& model, const std::vector<Port>& ports);

}  // namespace InferenceEngine::runtime
