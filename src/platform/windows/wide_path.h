#pragma once

#include <string>
#include <string_view>

#include "quavin/text.h"

namespace VelmoraQuavin::internal::platform {

/// A path as the system's wide interface takes it, up to its first zero byte.
/// @throws std::range_error "bad conversion" where it is not UTF-8.
std::wstring widePath(const String& path);

/// A path as the system's narrow interface takes it: the bytes up to the first zero byte.
std::string narrowPath(const String& path);

/// A text of the system's as UTF-8; what is no UTF-16 becomes U+FFFD.
std::string utf8Text(std::wstring_view text);

}  // namespace VelmoraQuavin::internal::platform
