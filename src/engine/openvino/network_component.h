#pragma once

#include <vector>

#include "quavin/metadata.h"

namespace VelmoraQuavin::internal {

/// A file of the network: where it is, and how to read it.
struct NetworkComponentEntry {
    String resolvedPath;    ///< The package's directory and the path, joined as they stand.
    String kind;            ///< ComponentKind::File or ComponentKind::SecuredFile.
    String path;            ///< As the manifest has it.
    Encryption encryption;  ///< The key of a secured file.

    bool isSecured() const { return kind == ComponentKind::SecuredFile; }
};

/// The plain and secured files among a target's components, in their order. The others are skipped:
/// a component's name alone says what it is.
std::vector<NetworkComponentEntry> collectNetworkComponents(
    const std::vector<ModelComponent>& components, const Filepath& rootDir);

/// Whether the first two entries can be read as topology and weights.
/// @return INVALID_MODEL_PATH or INVALID_WEIGHTS_PATH where not.
QuavinStatus checkNetworkComponents(const std::vector<NetworkComponentEntry>& entries);

}  // namespace VelmoraQuavin::internal
