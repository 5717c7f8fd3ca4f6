#pragma once

#include <string>
#include <vector>

#include "tools/quavin/cli/command_line.h"
#include "tools/quavin/cli/named_values.h"
#include "tools/quavin/package/key.h"
#include "tools/quavin/package/package_builder.h"
#include "tools/quavin/package/signing_key.h"

namespace quavin_tool {

/// What "pack" is asked for.
struct PackOptions {
    std::string network;
    std::string weights;
    std::string result;
    std::string root;
    Identity identity;
    std::vector<std::string> descriptions;  // of inputs and outputs, NAME=TEXT
    std::string encrypt;                    // "components", "archive" or empty
    KeyOptions key;
    SigningOptions signing;
    OutputOptions output;
};

/// Adds the arguments and options.
void addPackOptions(CLI::App& command, PackOptions& options);

/// @throws CLI::ValidationError for options that contradict each other.
void checkPackOptions(const PackOptions& options);

/// The texts of --describe, by the names of inputs and outputs.
/// @throws CLI::ValidationError for a malformed one, or a name that is given twice.
NamedValues portDescriptions(const PackOptions& options);

bool makesArchive(const PackOptions& options);
bool encryptsArchive(const PackOptions& options);

/// The directory in the archive, under a name that both overloads of extractTarball() accept.
/// @throws InvalidArgumentsException for other names.
std::string rootName(const PackOptions& options);

}  // namespace quavin_tool
