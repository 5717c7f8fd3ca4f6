#pragma once

/// @file
/// The version of the headers, and of the library itself.

#include "quavin/export.h"

// The build reads these three lines: they are the only place where the version is written.
#define QUAVIN_VERSION_MAJOR 0  ///< Incremented when the interface breaks.
#define QUAVIN_VERSION_MINOR 1  ///< Incremented when the interface grows.
#define QUAVIN_VERSION_PATCH 0  ///< Incremented when the interface stays the same.

namespace VelmoraQuavin {

/// The version of the loaded library, as "major.minor.patch"; always valid.
///
/// Compare it with the `QUAVIN_VERSION_*` macros to detect headers and a library that do not match.
/// May be called from any thread.
QUAVIN_API const char* getVersion() noexcept;

}  // namespace VelmoraQuavin
