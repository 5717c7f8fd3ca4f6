#pragma once

#include "package/json/json_access.h"

#include "quavin/feature.h"

namespace VelmoraQuavin::internal {

/// Reads one input or output from a manifest. Never fails: anything missing, unknown or of the
/// wrong JSON type keeps its default.
ModelFeatureDescriptor readFeatureDescriptor(const JsonValue& json);

}  // namespace VelmoraQuavin::internal
