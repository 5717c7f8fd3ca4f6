#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace VelmoraQuavin::internal::platform {

/// The files of the shared libraries currently loaded in the process, in UTF-8 and in the system's
/// order. Libraries without a file are left out.
std::vector<std::string> loadedLibraries();

/// The directory of a library loaded in this process; nothing if no library of that name is loaded.
/// @param name the file name without extension and version, and without the "lib" that some systems
///        put in front of it.
std::optional<std::filesystem::path> directoryOfLibrary(std::string_view name);

}  // namespace VelmoraQuavin::internal::platform
