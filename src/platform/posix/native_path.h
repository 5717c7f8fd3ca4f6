#pragma once

#include <string>

#include "quavin/text.h"

namespace VelmoraQuavin::internal::platform {

/// The path for a system call: up to the first zero byte, with "/" for each backslash.
std::string nativePath(const String& path);
/// The same for the calls that take wide paths on Windows, and so demand UTF-8 everywhere.
/// @throws std::range_error "bad conversion" where the path is not UTF-8.
std::string nativeUtf8Path(const String& path);
/// Whether a directory is at `nativePath`, or at the end of a link there.
bool isDirectory(const std::string& nativePath);

}  // namespace VelmoraQuavin::internal::platform
