#pragma once

#include <string>
#include <vector>

namespace VelmoraQuavin::internal::platform {

/// The files of the shared libraries that are in the process now, UTF-8, in the order in which the
/// system lists them. What the system has no file for is left out.
std::vector<std::string> loadedLibraries();

}  // namespace VelmoraQuavin::internal::platform
