#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/quavin/cli/parser_fwd.h"

namespace quavin_tool {

/// Values by the names that they are for.
using NamedValues = std::map<std::string, std::string>;

/// Adds an option that takes NAME=VALUE and may be repeated.
/// @param form what the value is, such as "NAME=FILE".
CLI::Option* addNamedValuesOption(CLI::App& command, const char* names,
                                  std::vector<std::string>& arguments, const char* form,
                                  const char* description);

/// Parses the arguments of such an option; the first "=" ends a name.
/// @throws CLI::ValidationError for a malformed argument or a name that is given twice.
NamedValues parseNamedValues(const char* option, const char* form,
                             const std::vector<std::string>& arguments);

}  // namespace quavin_tool
