#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// What a pax header says that extraction needs; times, owners and the like are skipped.
struct PaxRecords {
    std::optional<std::string> path;
    std::optional<uint64> size;
    bool sparse = false;  ///< The content is stored with its holes left out.
};

/// Reads the records of a pax header: "LENGTH KEY=VALUE" and a line feed each, where LENGTH counts
/// the whole record. A key that comes again replaces its value, and an empty value removes it.
/// @return nothing where they make no sense.
std::optional<PaxRecords> parsePaxRecords(std::string_view text);

}  // namespace VelmoraQuavin::internal
