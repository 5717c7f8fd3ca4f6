#pragma once

#include <string>
#include <vector>

#include "quavin/text.h"

namespace VelmoraQuavin::internal::platform {

/// Lists the entries of a directory. (The standard library's iterator ends the process if memory
/// runs out.)
/// @param names receives the entries' names in UTF-8, in no particular order and without "." and
///     "..". Names that are not valid text can't be used to find their entries.
/// @return a human-readable reason on failure; empty on success.
/// @throws std::range_error "bad conversion" if the path is not UTF-8.
std::string listDirectory(const String& path, std::vector<std::string>& names);

}  // namespace VelmoraQuavin::internal::platform
