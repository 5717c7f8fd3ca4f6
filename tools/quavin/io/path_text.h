#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "quavin/files.h"

namespace quavin_tool {

/// A path as the system takes it, from UTF-8. Where the system's names are texts, what is no UTF-8
/// becomes "?", which is in no file's name there.
std::filesystem::path systemPath(const std::string& path);
/// A path of the library as this system's shell takes it.
std::string shellPath(const VelmoraQuavin::Filepath& path);
/// The file of a package's component, as this system's shell takes it.
std::string componentPath(const std::string& package, const VelmoraQuavin::String& path);
/// Joins a directory and a name as this system's shell does.
std::string join(const std::string& directory, const std::string& name);
/// What stands behind the last separator.
std::string fileName(const std::string& path);
/// The same without its ending.
std::string stemOf(const std::string& path);
/// A text with its ASCII letters in lower case.
std::string toAsciiLower(std::string_view text);

}  // namespace quavin_tool
