#pragma once

#include <string_view>

namespace VelmoraQuavin::internal {

/// Whether a file can have this name, and no other one, on every system. Windows would see a
/// device, a stream of a file or a pattern in others, or leave out a part of them.
/// @param name one name of a path, UTF-8.
bool isPortableName(std::string_view name);

}  // namespace VelmoraQuavin::internal
