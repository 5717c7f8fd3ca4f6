#pragma once

namespace VelmoraQuavin::internal {

/// The engine's name for the device that every model runs on.
constexpr const char* kEngineDevice = "CPU";

}  // namespace VelmoraQuavin::internal
