#pragma once

#include <string>
#include <vector>

#include "key.h"

namespace quavin_tool {

/// Something that is wrong with a package, and what to do about it.
struct Finding {
    bool isError;  ///< It keeps the package from being used; otherwise it only surprises.
    std::string where;
    std::string what;
    std::string advice;
};
using Findings = std::vector<Finding>;

bool hasErrors(const Findings& findings);

/// Checks the package in a directory as far as its state allows.
/// @param key null where there is none; what is secured is then not checked, which is a finding.
Findings checkPackage(const std::string& package, const Key* key);

}  // namespace quavin_tool
