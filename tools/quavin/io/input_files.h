#pragma once

#include <CLI/CLI.hpp>
#include <map>
#include <string>
#include <vector>

#include "tools/quavin/io/npy.h"
#include "tools/quavin/package/package.h"

namespace quavin_tool {

/// Files by the names of the inputs that they are for.
using InputFiles = std::map<std::string, std::string>;

/// What becomes of an input without a file.
enum class MissingInputs { kRefused, kZeros };

/// --input NAME=FILE, as often as it is given.
CLI::Option* addInputOption(CLI::App& command, std::vector<std::string>& arguments);
/// --cast.
CLI::Option* addCastOption(CLI::App& command, Casts& casts);

/// Takes the arguments of --input apart.
/// @throws CLI::ValidationError for one of another form, and for a name that stands twice.
InputFiles parseInputs(const std::vector<std::string>& arguments);

/// The inputs of a model, from files.
/// @param raw whether files hold elements alone; ".npy" files otherwise.
/// @param casts whether ".npy" files may hold other types, which become those of the inputs.
/// @throws InvalidArgumentsException for names that the model lacks, for missing files, and
///         for files that do not fit, naming them; FileException for one that cannot be read.
Features readInputs(VelmoraQuavin::QuavinModel& model, const InputFiles& files, bool raw,
                    MissingInputs missing, Casts casts);

}  // namespace quavin_tool
