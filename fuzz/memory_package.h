#pragma once

#include <memory>

#include "package/source/memory_source.h"

namespace quavin_fuzz {

/// The keys of a package whose secured components all have kKey.
VelmoraQuavin::PackageKeys componentKeys();

/// Reads the manifest of a package in memory, and the components of all its targets, as loading a
/// model does before it calls the engine.
/// @throws Exception if the package is refused.
void readPackage(const std::shared_ptr<const VelmoraQuavin::internal::MemorySource>& source);

}  // namespace quavin_fuzz
