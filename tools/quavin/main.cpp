#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "command_line.h"
#include "platform/process.h"
#include "printing.h"
#include "quavin/client.h"

namespace {

constexpr int kFailure = 1;
constexpr int kUsage = 2;

int fail(const VelmoraQuavin::QuavinStatus& status) {
    std::cout.flush();
    std::cerr << "quavin: status " << status.getCode() << ": "
              << quavin_tool::printable(status.getDescription()) << '\n';
    return kFailure;
}

// The parser's own text, but for two cases: its word for a command is "subcommand", and arguments
// that are not expected are not repeated, since somebody may have typed a key there.
std::string textOf(const CLI::App& app, const CLI::ParseError& error, bool noArguments) {
    if (noArguments) {
        return "A COMMAND is required";
    }
    if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
        std::string text = "There are arguments that the command does not take";
        for (const std::string& argument : app.remaining(true)) {
            // Of a short option its letter: what is attached to it is its value.
            const bool isLong = argument.substr(0, 2) == "--";
            if (argument.substr(0, 1) == "-") {
                text +=
                    " " + (isLong ? argument.substr(0, argument.find('=')) : argument.substr(0, 2));
            }
        }
        return text;
    }
    return error.what();
}

int run(CLI::App& app, std::vector<std::string> arguments) {
    const bool noArguments = arguments.empty();
    try {
        std::reverse(arguments.begin(), arguments.end());  // as the parser takes them
        app.parse(std::move(arguments));
    } catch (const CLI::Success& request) {
        app.exit(request);  // help, or the version
    } catch (const CLI::ParseError& error) {
        const std::string text = textOf(app, error, noArguments);
        std::cerr << "quavin: " << quavin_tool::printable(text)
                  << "\nRun with --help for more information.\n";
        return kUsage;
    }
    // A result that nobody got is no success.
    std::cout.flush();
    return std::cout ? 0 : fail({VelmoraQuavin::FILE_ERROR, "Standard output cannot be written"});
}

}  // namespace

int main(int argc, char** argv) {
    namespace platform = VelmoraQuavin::internal::platform;
    const platform::OutputSession session;
    try {
        const VelmoraQuavin::QuavinClientInitTerm library{VelmoraQuavin::QuavinConfig()};
        CLI::App app;
        quavin_tool::defineCommandLine(app);
        return run(app, platform::programArguments(argc, argv));
    } catch (...) {
        return fail(VelmoraQuavin::getStatusFromCurrentException());
    }
}
