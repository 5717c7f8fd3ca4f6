// The runtime's core, which knows the devices.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "handles.hpp"

namespace InferenceEngine::runtime {

/**
 * The core shared by all users. It lives as long as anyone holds it: creating one takes as long as
 * reading a small network, and a second one would load the devices again. May be called from any
 * thread.
 */
std::shared_ptr<ov_core_t> sharedCore();

/**
 * The core shared by all users of these settings of a device. They hold for everything that is
 * compiled with it. It lives as long as anyone holds it or no core with other settings is asked
 * for.
 *
 * @param settings under the names of 2020 or the runtime's; if empty, this is sharedCore()
 * @throws Failure beginning with a setting's name, with the status PARAMETER_MISMATCH, if the
 * device refuses it
 */
std::shared_ptr<ov_core_t> sharedCore(const std::string& device,
                                      const std::map<std::string, std::string>& settings);

/**
 * Sets what the library wants of a device from now on, whatever the device's own defaults:
 * - Single precision: on processors with instructions for bfloat16 or half precision the runtime
 *   would use them, and results would be off in the third digit.
 * - No pinning: the runtime would bind each of its threads to one processor, and the host's thread
 *   during a prediction. Predictions then wait whenever other work runs on just that processor.
 *
 * A caller can still override this for one core. Skips properties that the device does not have,
 * and values that it refuses. May be called repeatedly and from any thread.
 */
void useOwnDefaults(const ov_core_t& core, const std::string& device) noexcept;

}  // namespace InferenceEngine::runtime
