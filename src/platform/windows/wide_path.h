#pragma once

#include <string>

#include "quavin/text.h"

namespace VelmoraQuavin::internal::platform {

/// A path as the system's wide interface takes it, up to its first zero byte.
/// @throws std::range_error "bad conversion" where it is not UTF-8.
std::wstring widePath(const String& path);

/// A path as the system's narrow interface takes it: the bytes up to the first zero byte.
std::string narrowPath(const String& path);

}  // namespace VelmoraQuavin::internal::platform
