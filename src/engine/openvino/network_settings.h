#pragma once

#include <inference_engine.hpp>
#include <string>
#include <vector>

#include "quavin/engine_info.h"

namespace VelmoraQuavin::internal {

/// The engine's name for the device that every model runs on.
constexpr const char* kEngineDevice = "CPU";

/// How a loaded network computes.
struct NetworkSettings {
    std::string precision;
    int threads = 0;
    int streams = 0;
};

/// What the engine reports about a loaded network; whatever it does not report stays empty.
/// @throws std::bad_alloc if memory runs out, and nothing else.
NetworkSettings settingsOf(const InferenceEngine::ExecutableNetwork& network);

/// What a device supports, in the engine's terms; empty if the engine does not report it.
/// @throws std::bad_alloc if memory runs out, and nothing else.
std::vector<String> capabilitiesOf(const InferenceEngine::Core& core, const std::string& device);

/// The settings, and what the engine and the device report about themselves; whatever they do not
/// report stays empty.
/// @throws std::bad_alloc if memory runs out, and nothing else.
EngineInfo makeEngineInfo(const InferenceEngine::Core& core, const std::string& device,
                          const NetworkSettings& settings);

}  // namespace VelmoraQuavin::internal
