#pragma once

#include "quavin/engine_info.h"
#include "quavin/engine_options.h"

namespace VelmoraQuavin::internal {

/// What a model loaded now would run on. Compiles a one-layer network to find out.
/// @throws InvalidArgumentsException if the engine refuses an option.
/// @throws std::exception if the engine cannot start, or if memory runs out.
EngineInfo openVinoEngineInfo(const EngineOptions& options);

}  // namespace VelmoraQuavin::internal
