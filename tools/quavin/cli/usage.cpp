#include "tools/quavin/cli/usage.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <vector>

#include "tools/quavin/cli/spelling.h"

namespace quavin_tool {
namespace {

// No option is longer: longer text may be something else, pasted after a dash.
constexpr std::size_t kLongestOption = 30;

using Arguments = std::vector<std::string>;

bool isOption(const std::string& argument) {
    return argument.size() > 1 && argument.front() == '-';
}

// The name of an option without its value. For a short option that is one letter: whatever follows
// it is the value.
std::string optionName(const std::string& argument) {
    const bool isLong = argument.substr(0, 2) == "--";
    return isLong ? argument.substr(0, argument.find('=')) : argument.substr(0, 2);
}

std::vector<std::string> longOptions(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::Option* const option : command.get_options()) {
        const std::vector<std::string>& own = option->get_lnames();
        names.insert(names.end(), own.begin(), own.end());
    }
    return names;
}

std::string unknownArgumentsText(const CLI::App& command, const Arguments& arguments) {
    std::string names;
    std::string meant;
    for (const std::string& argument : arguments) {
        const std::string name = optionName(argument);
        if (!isOption(argument) || name.size() > kLongestOption) {
            continue;
        }
        names += " " + name;
        const std::string known =
            name.size() > 2 ? closestName(name.substr(2), longOptions(command)) : "";
        if (!known.empty()) {
            meant += (meant.empty() ? "--" : " and --") + known;
        }
    }
    // Only options are repeated: anything else may be a key.
    const std::string text =
        names.empty() ? "The command was given unexpected arguments" : "Unknown argument:" + names;
    return meant.empty() ? text : text + "; did you mean " + meant + "?";
}

}  // namespace

std::string unknownCommandText(const CLI::App& app, std::string_view typed) {
    std::vector<std::string> commands;
    for (const CLI::App* const command : app.get_subcommands(nullptr)) {
        commands.push_back(command->get_name());
    }
    const std::string meant = closestName(typed, commands);
    return meant.empty() ? "There is no such command; \"quavin help\" lists the commands"
                         : "There is no such command; did you mean \"" + meant + "\"?";
}

std::string usageText(const CLI::App& app, const CLI::ParseError& error) {
    const Arguments unknown = app.remaining(true);
    const std::vector<CLI::App*> commands = app.get_subcommands();
    if (commands.empty()) {
        const auto word = std::find_if_not(unknown.begin(), unknown.end(), isOption);
        if (word != unknown.end()) {
            return unknownCommandText(app, *word);
        }
        // The parser itself would say "subcommand".
        return unknown.empty() ? "A COMMAND is required" : unknownArgumentsText(app, unknown);
    }
    // A missing option may merely be misspelt.
    const bool isMissing = dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
    if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr ||
        (isMissing && std::any_of(unknown.begin(), unknown.end(), isOption))) {
        return unknownArgumentsText(*commands.front(), unknown);
    }
    return error.what();
}

}  // namespace quavin_tool
