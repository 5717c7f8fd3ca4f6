#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace VelmoraQuavin::internal {

/// Where an archive's entry goes, as names from the destination down; none for the destination
/// itself.
struct TarEntryPath {
    std::vector<std::string> names;
    /// Why the entry must not be extracted; empty for a path that stays inside the destination.
    std::string refusal;
    /// Whether the name can only be that of a directory, as "." and "x/." are.
    bool isDirectory = false;
};

/// Takes an entry's name apart. "/" and "\" separate, "." and nothing between two separators do not
/// count. What could lead elsewhere is refused; names that a system has other uses for are its own
/// layer's to refuse.
TarEntryPath parseTarEntryPath(std::string_view name);

}  // namespace VelmoraQuavin::internal
