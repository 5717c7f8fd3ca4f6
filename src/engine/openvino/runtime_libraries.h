#pragma once

#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// Reports which libraries the folder of the engine's runtime lacks, where a failure may come of
/// that: the runtime loads them when they are needed, and its own texts do not name them.
/// @param doing what failed, as "loading the package".
/// @param path of the file or package that it failed with.
void diagnoseMissingLibraries(const char* doing, const String& path) noexcept;

}  // namespace VelmoraQuavin::internal
