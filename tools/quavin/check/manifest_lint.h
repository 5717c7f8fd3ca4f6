#pragma once

#include <string>

#include "tools/quavin/check/finding.h"

namespace quavin_tool {

/// Warns of what reading a manifest passes over in silence: members of a type that does not count,
/// names that nobody reads, kinds and element types that do not exist.
/// @param path of a manifest that can be read.
void lintManifest(const std::string& path, Findings& findings);

}  // namespace quavin_tool
