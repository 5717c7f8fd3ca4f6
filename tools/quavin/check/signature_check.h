#pragma once

#include <string>
#include <vector>

#include "tools/quavin/check/finding.h"
#include "tools/quavin/package/opened_package.h"
#include "tools/quavin/package/signing_key.h"

namespace quavin_tool {

/// Checks that one of the keys signed a package, and that all of its files are as they were then.
/// @param findings receives what is wrong, with which nothing else should be made of the package.
/// @return the name of the key that made the signature; empty if there are findings.
std::string checkSignature(const OpenedPackage& package, const std::vector<NamedKey>& keys,
                           Findings& findings);

}  // namespace quavin_tool
