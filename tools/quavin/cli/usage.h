#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <string_view>

namespace quavin_tool {

/// What is wrong with a call that the parser refused. Arguments are not repeated, since somebody
/// may have typed a key; of options only the name is.
std::string usageText(const CLI::App& app, const CLI::ParseError& error);

/// What is said of a word that stands where a command should, and is none.
std::string unknownCommandText(const CLI::App& app, std::string_view typed);

}  // namespace quavin_tool
