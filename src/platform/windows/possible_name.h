#pragma once

#include <string_view>

namespace VelmoraQuavin::internal::platform {

/// Whether a file can have this name and no other one. Elsewhere the system would see a device, a
/// stream of a file or a pattern in it, or leave out a part of it.
/// @param name one name of a path, not empty, without separators.
bool isPossibleName(std::wstring_view name);

}  // namespace VelmoraQuavin::internal::platform
