#pragma once

#include "quavin/metadata.h"

namespace VelmoraQuavin::internal {

/// Reports what a package has in place of a target for this engine.
void diagnoseMissingTarget(const ModelMetadata& metadata) noexcept;

}  // namespace VelmoraQuavin::internal
