#pragma once

#include "quavin/engine_info.h"

namespace VelmoraQuavin::internal {

/// What a model that is loaded now runs on. Compiles a network of one layer to know.
/// @throws std::exception where the engine cannot start, and where memory runs out.
EngineInfo openVinoEngineInfo();

}  // namespace VelmoraQuavin::internal
