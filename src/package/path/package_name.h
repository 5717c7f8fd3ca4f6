#pragma once

#include <string>
#include <string_view>

namespace VelmoraQuavin::internal {

/// The name under which a package in memory holds a file: as file systems read a relative path, "/"
/// and "\" both separate, and "." and empty parts are skipped. Nothing is refused.
/// @return the parts with "/" between them.
std::string packageName(std::string_view path);

}  // namespace VelmoraQuavin::internal
