#pragma once

#include "quavin/engine_options.h"
#include "tools/quavin/cli/parser_fwd.h"

namespace quavin_tool {

/// Adds --threads, --precision, --hint, --cache and --map-weights.
void addEngineOptions(CLI::App& command, VelmoraQuavin::EngineOptions& options);

}  // namespace quavin_tool
