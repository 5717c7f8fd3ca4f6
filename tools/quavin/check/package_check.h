#pragma once

#include <string>

#include "quavin/engine_options.h"
#include "tools/quavin/check/finding.h"
#include "tools/quavin/package/key.h"

namespace quavin_tool {

/// Checks the package in a directory as far as its state allows.
/// @param key null if there is none; then secured files are not checked, which is a finding.
/// @param options how to compute the prediction that is tried.
Findings checkPackage(const std::string& package, const Key* key,
                      const VelmoraQuavin::EngineOptions& options);

}  // namespace quavin_tool
