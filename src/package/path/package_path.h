#pragma once

#include <string>
#include <string_view>

namespace VelmoraQuavin::internal {

/// The path of a file in a package, in the one form in which packages in memory hold it. As for
/// file systems, "/" and "\" both separate, and "." and empty parts are skipped. Nothing is
/// refused.
/// @return the parts with "/" between them.
std::string packagePath(std::string_view path);

}  // namespace VelmoraQuavin::internal
