#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "tools/quavin/cli/command_line.h"
#include "tools/quavin/cli/usage.h"

namespace quavin_tool {
namespace {

void printHelp(const CLI::App& app, const std::string& topic) {
    if (topic.empty()) {
        // Not App::help(): it would print the help of the given command, "help".
        std::cout << app.get_formatter()->make_help(&app, app.get_name(),
                                                    CLI::AppFormatMode::Normal);
        return;
    }
    const std::vector<const CLI::App*> commands = app.get_subcommands(
        [&topic](const CLI::App* command) { return command->get_name() == topic; });
    if (commands.empty()) {
        throw CLI::ArgumentMismatch(unknownCommandText(app, topic));
    }
    std::cout << commands.front()->help(app.get_name());
}

}  // namespace

void addHelpCommand(CLI::App& app) {
    auto topic = std::make_shared<std::string>();
    CLI::App* const command = app.add_subcommand("help", "Prints the help of a command.");
    command->add_option("COMMAND", *topic, "The command; without one, the help of all commands")
        ->type_name("");
    command->callback([topic, &app] { printHelp(app, *topic); });
    command->group("");  // "--help" shows it in its last line, not among the commands for packages
}

}  // namespace quavin_tool
