#pragma once

#include <memory>

#include "quavin/logging.h"

namespace quavin_tool {

/// Collects the library's diagnostics, which explain errors and are printed with them. Repeated
/// texts are kept once.
std::shared_ptr<VelmoraQuavin::ILogProcessor> noteKeeper();

/// Prints the collected notes on standard error and discards them.
void printNotes();
/// Discards the collected notes, if they were reported otherwise or belong to another process.
void forgetNotes();

}  // namespace quavin_tool
