#pragma once

#include <string>
#include <string_view>

#include "tools/quavin/cli/parser_fwd.h"

namespace quavin_tool {

/// The message for a command line that the parser refused. It does not repeat arguments, since one
/// may be a key; of options it repeats only the name.
std::string usageText(const CLI::App& app, const CLI::ParseError& error);

/// The message for a word that is not a command but stands in place of one.
std::string unknownCommandText(const CLI::App& app, std::string_view typed);

}  // namespace quavin_tool
