#pragma once

#include <string>

#include "tools/quavin/check/finding.h"

namespace quavin_tool {

/// Warns about what reading a manifest silently ignores: members of a wrong type, unknown names,
/// and unknown feature and element types.
/// @param path the path of a manifest that can be read.
void lintManifest(const std::string& path, Findings& findings);

}  // namespace quavin_tool
