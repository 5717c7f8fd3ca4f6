#pragma once

#include <CLI/CLI.hpp>

#include "tools/quavin/cli/console.h"

namespace quavin_tool {

/// Defines all commands and their options. Parsing runs the command that was named.
void defineCommandLine(CLI::App& app);

/// --quiet, and --json for commands that report something.
void addOutputOptions(CLI::App& command, OutputOptions& options);
void addQuietOption(CLI::App& command, OutputOptions& options);

/// For options that are paths: not empty, and no backslash where that is not the system's separator
/// (the library takes it for one everywhere).
CLI::Validator isPath();

// One for each command, in a file of its own.
void addPackCommand(CLI::App& app);
void addInspectCommand(CLI::App& app);
void addVerifyCommand(CLI::App& app);
void addRunCommand(CLI::App& app);
void addBenchCommand(CLI::App& app);
void addUnpackCommand(CLI::App& app);
void addEncryptCommand(CLI::App& app);
void addDecryptCommand(CLI::App& app);
void addKeygenCommand(CLI::App& app);
void addDoctorCommand(CLI::App& app);
/// After all others, which it looks up.
void addHelpCommand(CLI::App& app);

}  // namespace quavin_tool
