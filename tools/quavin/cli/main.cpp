#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "platform/child_process.h"
#include "platform/process.h"
#include "quavin/client.h"
#include "tools/quavin/check/trial.h"
#include "tools/quavin/cli/command_line.h"
#include "tools/quavin/cli/library.h"
#include "tools/quavin/cli/notes.h"
#include "tools/quavin/cli/printing.h"
#include "tools/quavin/cli/usage.h"
#include "tools/quavin/package/key.h"

namespace {

constexpr int kFailure = 1;
constexpr int kUsage = 2;

int fail(const VelmoraQuavin::QuavinStatus& status) {
    quavin_tool::printNotes();
    std::cerr << "quavin: status " << status.getCode() << ": "
              << quavin_tool::withoutKeys(quavin_tool::printable(status.getDescription())) << '\n';
    return kFailure;
}

// A command that succeeded may still have notes, such as on an input read in a different shape.
void explainSuccess(const CLI::App& app) {
    for (const CLI::App* const command : app.get_subcommands()) {
        const CLI::Option* const quiet = command->get_option_no_throw("--quiet");
        if (quiet == nullptr || quiet->count() == 0) {
            quavin_tool::printNotes();
        }
    }
}

int run(CLI::App& app, std::vector<std::string> arguments) {
    try {
        std::reverse(arguments.begin(), arguments.end());  // the parser expects them in reverse
        app.parse(std::move(arguments));
    } catch (const CLI::Success& request) {
        app.exit(request);  // --help or --version
    } catch (const CLI::ParseError& error) {
        const std::string text = quavin_tool::usageText(app, error);
        std::cerr << "quavin: " << quavin_tool::withoutKeys(quavin_tool::printable(text))
                  << "\nRun with --help for more information.\n";
        return kUsage;
    }
    // Fail if the result could not be written.
    std::cout.flush();
    if (std::cout) {
        explainSuccess(app);
        return 0;
    }
    return fail({VelmoraQuavin::FILE_ERROR, "Cannot write to standard output"});
}

}  // namespace

int main(int argc, char** argv) {
    namespace platform = VelmoraQuavin::internal::platform;
    const platform::OutputSession session;
    try {
        const VelmoraQuavin::QuavinClientInitTerm library(quavin_tool::libraryConfig());
        if (const auto status = platform::serveAsChild(quavin_tool::answerTrial)) {
            return *status;
        }
        CLI::App app;
        quavin_tool::defineCommandLine(app);
        return run(app, platform::programArguments(argc, argv));
    } catch (...) {
        return fail(VelmoraQuavin::getStatusFromCurrentException());
    }
}
