#pragma once

#include "quavin/engine_info.h"

namespace VelmoraQuavin::internal {

/// What a model loaded now would run on. Compiles a one-layer network to find out.
/// @throws std::exception if the engine cannot start, or if memory runs out.
EngineInfo openVinoEngineInfo();

}  // namespace VelmoraQuavin::internal
