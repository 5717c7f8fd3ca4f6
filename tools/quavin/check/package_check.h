#pragma once

#include <string>

#include "tools/quavin/check/finding.h"
#include "tools/quavin/package/key.h"

namespace quavin_tool {

/// Checks the package in a directory as far as its state allows.
/// @param key null if there is none; then secured files are not checked, which is a finding.
Findings checkPackage(const std::string& package, const Key* key);

}  // namespace quavin_tool
