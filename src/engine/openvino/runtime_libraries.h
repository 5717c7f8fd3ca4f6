#pragma once

#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// Reports which libraries are missing from the folder of the engine's runtime, for failures that
/// this may have caused: the runtime loads them on demand, and its own messages do not name them.
/// @param doing what failed, such as "loading the package".
/// @param path the file or package concerned.
void diagnoseMissingLibraries(const char* doing, const String& path) noexcept;

}  // namespace VelmoraQuavin::internal
