#pragma once

#include "quavin/files.h"

namespace VelmoraQuavin::internal {

/// The name of the manifest in a package's directory.
constexpr const char* kManifestName = "manifest.json";

/// The path of the manifest in a package's directory.
inline Filepath manifestPath(const Filepath& package) {
    return Filepath(package).append(Filepath(kManifestName));
}

}  // namespace VelmoraQuavin::internal
