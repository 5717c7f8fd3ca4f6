#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// The parts of a pax header that extraction needs; times, owners and the like are skipped.
struct PaxRecords {
    std::optional<std::string> path;
    std::optional<uint64> size;
    bool sparse = false;  ///< The content is stored without its holes.
};

/// Parses the records of a pax header, each "LENGTH KEY=VALUE" and a line feed, where LENGTH counts
/// the whole record. A repeated key replaces the earlier value; an empty value removes it.
/// @return nothing if the records are malformed.
std::optional<PaxRecords> parsePaxRecords(std::string_view text);

}  // namespace VelmoraQuavin::internal
