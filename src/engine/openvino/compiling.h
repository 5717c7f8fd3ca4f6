#pragma once

#include <inference_engine.hpp>
#include <iosfwd>
#include <string>
#include <vector>

#include "quavin/engine_options.h"

namespace VelmoraQuavin::internal {

/// A setting of the engine, under its name of 2020, and the option that it comes from.
struct EngineSetting {
    const char* name;
    std::string value;
    const char* option;
};
/// What the engine is given for a host's options; empty without any.
/// @throws std::bad_alloc if memory runs out.
std::vector<EngineSetting> engineSettings(const EngineOptions& options,
                                          const InferenceEngine::Core& core);

/// Compiles a network for the engine's device. Without options of the host's the engine is given
/// none.
/// @throws InvalidArgumentsException, naming the option, if the engine refuses one.
/// @throws std::exception if the engine fails.
InferenceEngine::ExecutableNetwork compileNetwork(InferenceEngine::Core& core,
                                                  const InferenceEngine::CNNNetwork& network,
                                                  const EngineOptions& options);

/// Takes over a network that was compiled with the same options and exported.
/// @throws as compileNetwork() does; the engine fails for an export of another engine or processor.
InferenceEngine::ExecutableNetwork importNetwork(InferenceEngine::Core& core, std::istream& stream,
                                                 const EngineOptions& options);
/// Writes what importNetwork() reads.
/// @throws std::exception if the engine fails, or cannot export.
void exportNetwork(InferenceEngine::ExecutableNetwork& network, std::ostream& stream);

}  // namespace VelmoraQuavin::internal
