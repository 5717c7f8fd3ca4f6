#pragma once

#include <inference_engine.hpp>

#include "quavin/engine_options.h"

namespace VelmoraQuavin::internal {

/// Compiles a network for the engine's device. Without options of the host's the engine is given
/// none.
/// @throws InvalidArgumentsException, naming the option, if the engine refuses one.
/// @throws std::exception if the engine fails.
InferenceEngine::ExecutableNetwork compileNetwork(InferenceEngine::Core& core,
                                                  const InferenceEngine::CNNNetwork& network,
                                                  const EngineOptions& options);

}  // namespace VelmoraQuavin::internal
