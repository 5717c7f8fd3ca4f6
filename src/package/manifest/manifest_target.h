#pragma once

#include "package/json/json_access.h"

#include "quavin/metadata.h"

namespace VelmoraQuavin::internal {

/// Reads a manifest's target for one engine. Never fails: anything missing or of the wrong JSON
/// type counts as absent.
ModelTarget readTarget(const JsonValue& json);

}  // namespace VelmoraQuavin::internal
