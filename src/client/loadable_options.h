#pragma once

#include "quavin/engine_options.h"

namespace VelmoraQuavin::internal {

/// @throws InvalidArgumentsException, naming the option or the key, if an option has a value
///         without a meaning, or, while keys are trusted, if one of them cannot be used or weights
///         are to be mapped.
void requireLoadable(const EngineOptions& options);

}  // namespace VelmoraQuavin::internal
