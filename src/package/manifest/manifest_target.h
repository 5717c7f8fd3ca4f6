#pragma once

#include "package/manifest/json_access.h"

#include "quavin/metadata.h"

namespace VelmoraQuavin::internal {

/// Reads what a manifest says for one engine. Never fails: what is missing or of another JSON type
/// counts as absent.
ModelTarget readTarget(const JsonValue& json);

}  // namespace VelmoraQuavin::internal
