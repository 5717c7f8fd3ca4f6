// The runtime's core, which knows the devices.
#pragma once

#include <memory>

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

}  // namespace InferenceEngine::runtime
