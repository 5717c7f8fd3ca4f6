#pragma once

#include "quavin/files.h"

namespace VelmoraQuavin::internal {

/// The name of the manifest in a package's directory.
constexpr const char* kManifestName = "manifest.json";

/// The path of the manifest in a package's directory.
inline Filepath manifestPath(const Filepath& package) {
    return Filepath(package).append(Filepath(kManifestName));
}

/// The name in messages of a package without a directory.
constexpr const char* kPackageInMemory = "in memory";

/// The name in messages of the package with this root directory.
inline String packageTitle(const Filepath& root) {
    return *root.c_str() == 0 ? String(kPackageInMemory) : String(root.c_str());
}

}  // namespace VelmoraQuavin::internal
