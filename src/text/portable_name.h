#pragma once

#include <string_view>

namespace VelmoraQuavin::internal {

/// Whether a file can have exactly this name on every system. Windows would treat other names as a
/// device, a file's stream or a pattern, or drop part of them.
/// @param name a single component of a path, UTF-8.
bool isPortableName(std::string_view name);

}  // namespace VelmoraQuavin::internal
