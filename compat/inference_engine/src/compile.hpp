// Compiling a model for a device.
#pragma once

#include <map>
#include <string>

#include "handles.hpp"

namespace InferenceEngine::runtime {

/** @throws Failure with the runtime's text, or if there are more settings than can be passed */
Handle<ov_compiled_model_t> compile(const ov_core_t& core, const ov_model_t& model,
                                    const std::string& device,
                                    const std::map<std::string, std::string>& config);

}  // namespace InferenceEngine::runtime
