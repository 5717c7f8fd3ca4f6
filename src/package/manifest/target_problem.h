#pragma once

#include <string_view>

#include "quavin/metadata.h"

namespace VelmoraQuavin::internal {

/// Reports which targets a package has instead of the one needed.
/// @param needed the engine's name in manifests.
void diagnoseMissingTarget(const ModelMetadata& metadata, std::string_view needed) noexcept;

}  // namespace VelmoraQuavin::internal
