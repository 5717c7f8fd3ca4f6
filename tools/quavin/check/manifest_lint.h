#pragma once

#include <string_view>

#include "tools/quavin/check/finding.h"

namespace quavin_tool {

/// Warns about what reading a manifest silently ignores: members of a wrong type, unknown names,
/// and unknown feature and element types.
/// @param manifest the text of a manifest that the library can read.
void lintManifest(std::string_view manifest, Findings& findings);

}  // namespace quavin_tool
