// Properties of devices and compiled models, under the names used in 2020.
#pragma once

#include <string>

#include "handles.hpp"
#include "ie/parameter.hpp"

namespace InferenceEngine::runtime {

/**
 * A configuration value or metric of a device, as text; "OPTIMIZATION_CAPABILITIES" as a list of
 * texts.
 *
 * @param name the interface's name for it, or the runtime's
 * @throws Failure if the device does not know it
 */
Parameter propertyOf(const ov_core_t& core, const std::string& device, const std::string& name);

/** As above, for a compiled model. */
Parameter propertyOf(const ov_compiled_model_t& model, const std::string& name);

}  // namespace InferenceEngine::runtime
