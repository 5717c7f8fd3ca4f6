#pragma once

#include <inference_engine.hpp>
#include <string>

#include "quavin/engine_info.h"

namespace VelmoraQuavin::internal {

/// How a loaded network computes.
struct NetworkSettings {
    std::string precision;
    int threads = 0;
    int streams = 0;
};

/// What the engine tells about a loaded network; what it refuses to tell stays empty.
/// @throws std::bad_alloc where memory runs out, and nothing else.
NetworkSettings settingsOf(const InferenceEngine::ExecutableNetwork& network);

/// The settings, and what there is to tell about engine and device; what these refuse to tell stays
/// empty.
/// @throws std::bad_alloc where memory runs out, and nothing else.
EngineInfo makeEngineInfo(const InferenceEngine::Core& core, const std::string& device,
                          const NetworkSettings& settings);

}  // namespace VelmoraQuavin::internal
