// Compiling a model for a device.
#pragma once

#include <string>

#include "handles.hpp"

namespace InferenceEngine::runtime {

/**
 * Compiles with the settings of the core.
 *
 * @throws Failure with the runtime's text
 */
Handle<ov_compiled_model_t> compile(const ov_core_t& core, const ov_model_t& model,
                                    const std::string& device);

}  // namespace InferenceEngine::runtime
