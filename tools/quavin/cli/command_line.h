#pragma once

#include <CLI/CLI.hpp>

#include "tools/quavin/cli/console.h"

namespace quavin_tool {

/// Defines all commands and their options. Parsing runs the selected command.
void defineCommandLine(CLI::App& app);

/// Adds --quiet, and --json for commands that report a result.
void addOutputOptions(CLI::App& command, OutputOptions& options);
void addQuietOption(CLI::App& command, OutputOptions& options);

/// Adds the argument PACKAGE.
void addPackageArgument(CLI::App& command, std::string& package);
/// Adds --raw.
CLI::Option* addRawOption(CLI::App& command, bool& raw);

/// For path options: refuses empty paths, and backslashes unless they are the system's separator
/// (the library treats them as separators everywhere).
CLI::Validator isPath();

// One function per command, each in its own file.
void addPackCommand(CLI::App& app);
void addInspectCommand(CLI::App& app);
void addVerifyCommand(CLI::App& app);
void addSignCommand(CLI::App& app);
void addRunCommand(CLI::App& app);
void addBenchCommand(CLI::App& app);
void addUnpackCommand(CLI::App& app);
void addEncryptCommand(CLI::App& app);
void addDecryptCommand(CLI::App& app);
void addKeygenCommand(CLI::App& app);
void addDoctorCommand(CLI::App& app);
/// Must come last: it looks up the other commands.
void addHelpCommand(CLI::App& app);

}  // namespace quavin_tool
