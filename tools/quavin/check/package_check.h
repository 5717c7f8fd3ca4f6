#pragma once

#include <string>

#include "quavin/engine_options.h"
#include "tools/quavin/check/finding.h"
#include "tools/quavin/package/key.h"
#include "tools/quavin/package/opened_package.h"

namespace quavin_tool {

/// Checks a package as far as its state allows.
/// @param path where it is, for the process that tries it.
/// @param package opened from there with the same key.
/// @param key null if there is none; then secured files are not checked, which is a finding.
/// @param options how to compute the prediction that is tried.
Findings checkPackage(const std::string& path, const OpenedPackage& package, const Key* key,
                      const VelmoraQuavin::EngineOptions& options);

}  // namespace quavin_tool
