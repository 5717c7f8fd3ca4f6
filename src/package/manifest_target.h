#pragma once

#include <rapidjson/document.h>

#include "quavin/metadata.h"

namespace VelmoraQuavin::internal {

/// Reads what a manifest says for one engine. Never fails: what is missing or of another JSON type
/// counts as absent.
ModelTarget readTarget(const rapidjson::Value& json);

}  // namespace VelmoraQuavin::internal
