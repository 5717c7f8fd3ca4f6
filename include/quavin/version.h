#pragma once

/// @file
/// The version of the headers, and of the library behind them.

#include "quavin/export.h"

// The build reads these three lines: the version is written down here and nowhere else.
#define QUAVIN_VERSION_MAJOR 0  ///< Changes when the interface breaks.
#define QUAVIN_VERSION_MINOR 1  ///< Changes when the interface grows.
#define QUAVIN_VERSION_PATCH 0  ///< Changes when only the inside does.

namespace VelmoraQuavin {

/// The version of the library that is loaded, as "major.minor.patch"; valid for ever.
///
/// Compare it with the `QUAVIN_VERSION_*` macros to find headers and library that do not belong
/// together. May be called from any thread.
QUAVIN_API const char* getVersion() noexcept;

}  // namespace VelmoraQuavin
