#pragma once

#include "c/guard.h"
#include "package/manifest/manifest_path.h"
#include "quavin/package_memory.h"

namespace VelmoraQuavin::internal {

/// The manifest of the package in a directory, with the keys set.
/// @throws Exception with the status of ModelMetadata::load if that fails.
inline ModelMetadata readManifest(const char* directory, const PackageKeys& keys) {
    ModelMetadata metadata;
    require(metadata.load(manifestPath(Filepath(directory))));
    keys.applyTo(metadata);
    return metadata;
}

}  // namespace VelmoraQuavin::internal
