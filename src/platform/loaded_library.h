#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace VelmoraQuavin::internal::platform {

/// The directory of a library that this process has loaded; nothing where it has none of the name.
/// @param name the file's name up to its ending and version: "lib" comes before it where the system
///        names libraries so.
std::optional<std::filesystem::path> directoryOfLibrary(std::string_view name);

}  // namespace VelmoraQuavin::internal::platform
