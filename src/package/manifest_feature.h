#pragma once

#include <rapidjson/document.h>

#include "quavin/feature.h"

namespace VelmoraQuavin::internal {

/// Reads one input or output of a manifest. Never fails: what is missing, unknown or of another
/// JSON type keeps its default.
ModelFeatureDescriptor readFeatureDescriptor(const rapidjson::Value& json);

}  // namespace VelmoraQuavin::internal
