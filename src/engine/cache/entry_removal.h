#pragma once

#include <cstdint>
#include <string>

#include "engine/cache/cache_name.h"
#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// Removes the entries of a directory that were written longest ago, until the rest, apart from
/// one, take no more than a number of bytes. Touches only regular files named like entries.
/// @param directory in UTF-8.
/// @param kept the entry that is neither counted nor removed.
/// @return a human-readable line if that failed; empty if it succeeded. An entry that another
///     process removed first is no failure.
/// @throws std::range_error "bad conversion" if the path is not UTF-8.
std::string removeOldEntries(const String& directory, const EntryName& kept, std::uint64_t room);

}  // namespace VelmoraQuavin::internal
