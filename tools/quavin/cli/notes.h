#pragma once

#include <memory>

#include "quavin/logging.h"

namespace quavin_tool {

/// Keeps the library's diagnostics: they explain errors, and are printed with them. Each text is
/// kept once, however often it comes.
std::shared_ptr<VelmoraQuavin::ILogProcessor> noteKeeper();

/// Prints what was kept on standard error, and forgets it.
void printNotes();
/// Forgets what was kept: it was told in other words, or was for another process.
void forgetNotes();

}  // namespace quavin_tool
