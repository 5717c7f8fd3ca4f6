#pragma once

#include <memory>

#include "quavin/model.h"

namespace VelmoraQuavin::internal {

/// A model of the OpenVINO engine, not loaded yet. The device has no effect: inference runs on the
/// engine's "CPU".
/// @throws std::exception where the engine cannot start.
std::shared_ptr<QuavinModel> makeOpenVinoModel(const String& name, const Device& device);

}  // namespace VelmoraQuavin::internal
