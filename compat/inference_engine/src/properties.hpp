// What the runtime tells about a device and about a compiled model, under the names of 2020.
#pragma once

#include <string>

#include "handles.hpp"
#include "ie/parameter.hpp"

namespace InferenceEngine::runtime {

/**
 * A configuration value or metric of a device, as text; "OPTIMIZATION_CAPABILITIES" as a list of
 * texts.
 *
 * @param name the interface's own name for it, or the runtime's
 * @throws Failure for what the device does not know
 */
Parameter propertyOf(const ov_core_t& core, const std::string& device, const std::string& name);

/** The same of a compiled model. */
Parameter propertyOf(const ov_compiled_model_t& model, const std::string& name);

}  // namespace InferenceEngine::runtime
