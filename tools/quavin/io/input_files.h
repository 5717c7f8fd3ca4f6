#pragma once

#include <string>
#include <vector>

#include "tools/quavin/cli/named_values.h"
#include "tools/quavin/cli/parser_fwd.h"
#include "tools/quavin/io/npy.h"
#include "tools/quavin/package/package.h"

namespace quavin_tool {

/// Input files by the names of their inputs.
using InputFiles = NamedValues;

/// How to treat inputs without a file.
enum class MissingInputs { kRefused, kZeros };

/// Adds --input NAME=FILE, which may be repeated.
CLI::Option* addInputOption(CLI::App& command, std::vector<std::string>& arguments);
/// Adds --cast.
CLI::Option* addCastOption(CLI::App& command, Casts& casts);

/// Parses the arguments of --input.
/// @throws CLI::ValidationError for a malformed argument or a name that is given twice.
InputFiles parseInputs(const std::vector<std::string>& arguments);

/// Reads the inputs of a model from files.
/// @param raw whether files hold only elements; otherwise they are ".npy" files.
/// @param casts whether ".npy" files of other types are converted to the types of the inputs.
/// @throws InvalidArgumentsException naming unknown inputs, inputs without a file, or files that do
///         not fit; FileException for a file that cannot be read.
Features readInputs(VelmoraQuavin::QuavinModel& model, const InputFiles& files, bool raw,
                    MissingInputs missing, Casts casts);

}  // namespace quavin_tool
