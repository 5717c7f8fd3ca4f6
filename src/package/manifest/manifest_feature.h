#pragma once

#include "package/manifest/json_access.h"

#include "quavin/feature.h"

namespace VelmoraQuavin::internal {

/// Reads one input or output of a manifest. Never fails: what is missing, unknown or of another
/// JSON type keeps its default.
ModelFeatureDescriptor readFeatureDescriptor(const JsonValue& json);

}  // namespace VelmoraQuavin::internal
