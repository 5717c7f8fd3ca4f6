// Properties of devices and compiled models, under the names used in 2020.
#pragma once

#include <string>
#include <utility>

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

/**
 * A setting under the names of 2020, as the runtime has it; others are left unchanged.
 *
 * "ENFORCE_BF16" = "YES" selects what the device computes fastest with: bfloat16, half precision
 * or, without either, single precision.
 */
std::pair<std::string, std::string> runtimeSetting(const ov_core_t& core, const std::string& device,
                                                   const std::string& name,
                                                   const std::string& value);

}  // namespace InferenceEngine::runtime
