// The runtime's core, which knows the devices.
#pragma once

#include <memory>
#include <string>

#include "handles.hpp"

namespace InferenceEngine::runtime {

/**
 * The core that everything shares which asks for no configuration file. It lives as long as
 * somebody holds it: making one takes as long as reading a small network, and a second one would
 * load the devices anew. May be called from any thread.
 */
std::shared_ptr<ov_core_t> sharedCore();

/** A core of its own, with the devices that the file lists. */
std::shared_ptr<ov_core_t> coreFromFile(const char* configFile);

/**
 * Has a device compute with single precision from now on, whatever it would do of its own accord:
 * where processors have instructions for bfloat16 or half precision the runtime uses them, and the
 * numbers are off in the third digit. What a caller sets for one compilation stays. A device that
 * has no such property, or refuses the value, is left as it is. May be called again and again, and
 * from any thread.
 */
void useSinglePrecision(const ov_core_t& core, const std::string& device) noexcept;

}  // namespace InferenceEngine::runtime
