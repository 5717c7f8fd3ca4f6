#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace VelmoraQuavin::internal {

/// Where an archive entry goes, as names from the destination down; empty for the destination
/// itself.
struct TarEntryPath {
    std::vector<std::string> names;
    /// Why the entry must not be extracted; empty if the path stays inside the destination.
    std::string refusal;
    /// Whether the name can only refer to a directory, like "." and "x/.".
    bool isDirectory = false;
};

/// Splits an entry's name. Both "/" and "\" separate; "." and empty parts are skipped. Names that
/// could lead outside the destination are refused; refusing names that are reserved on a particular
/// system is left to its platform layer.
TarEntryPath parseTarEntryPath(std::string_view name);

}  // namespace VelmoraQuavin::internal
