#pragma once

#include <string>

#include "quavin/text.h"

namespace VelmoraQuavin::internal::platform {

/// The path as passed to system calls: up to the first zero byte, with each backslash turned into
/// "/".
std::string nativePath(const String& path);
/// As above, for operations that use wide paths on Windows and therefore require UTF-8 everywhere.
/// @throws std::range_error "bad conversion" if the path is not UTF-8.
std::string nativeUtf8Path(const String& path);
/// Whether `nativePath` is a directory or a link to one.
bool isDirectory(const std::string& nativePath);

}  // namespace VelmoraQuavin::internal::platform
