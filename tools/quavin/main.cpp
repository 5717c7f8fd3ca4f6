#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <string>

#include "command_line.h"
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

int run(CLI::App& app, int argc, char** argv) {
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& request) {
        return app.exit(request);  // help, or the version
    } catch (const CLI::ParseError& error) {
        // The parser's own word for it is "subcommand".
        const std::string text = argc < 2 ? "A COMMAND is required" : error.what();
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
    try {
        const VelmoraQuavin::QuavinClientInitTerm library{VelmoraQuavin::QuavinConfig()};
        CLI::App app;
        quavin_tool::defineCommandLine(app);
        return run(app, argc, argv);
    } catch (...) {
        return fail(VelmoraQuavin::getStatusFromCurrentException());
    }
}
