#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "quavin/files.h"
#include "text/unicode.h"

namespace quavin_tool {

/// Converts a UTF-8 path for the system. If the system's names are text, invalid UTF-8 becomes "?",
/// which no file name contains there.
std::filesystem::path systemPath(const std::string& path);
/// A path of the library in the notation of this system's shell.
std::string shellPath(const VelmoraQuavin::Filepath& path);
/// The path of a package's component in the notation of this system's shell.
std::string componentPath(const std::string& package, const VelmoraQuavin::String& path);
/// Joins a directory and a name with this system's separator.
std::string join(const std::string& directory, const std::string& name);
/// The part after the last separator.
std::string fileName(const std::string& path);
/// As above, without the extension.
std::string stemOf(const std::string& path);
using VelmoraQuavin::internal::toAsciiLower;

}  // namespace quavin_tool
