#pragma once

#include <string>
#include <string_view>

#include "quavin/text.h"

namespace VelmoraQuavin::internal::platform {

/// A path for the system's wide interface, up to its first zero byte.
/// @throws std::range_error "bad conversion" if it is not UTF-8.
std::wstring widePath(const String& path);

/// A path for the system's narrow interface: the bytes up to the first zero byte.
std::string narrowPath(const String& path);

/// Converts text from the system to UTF-8; invalid UTF-16 becomes U+FFFD.
std::string utf8Text(std::wstring_view text);

}  // namespace VelmoraQuavin::internal::platform
