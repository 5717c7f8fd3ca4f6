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
};

/// Takes an entry's name apart. "/" and "\" separate, "." and nothing between two separators do not
/// count; what could lead elsewhere on any system is refused.
TarEntryPath parseTarEntryPath(std::string_view name);

}  // namespace VelmoraQuavin::internal
