#include "tools/quavin/cli/command_line.h"

#include <filesystem>
#include <string>

#include "quavin/version.h"

namespace quavin_tool {

void addQuietOption(CLI::App& command, OutputOptions& options) {
    command.add_flag("-q,--quiet", options.quiet, "Print only results and errors");
}

void addOutputOptions(CLI::App& command, OutputOptions& options) {
    addQuietOption(command, options);
    command.add_flag("--json", options.json, "Print the result as one JSON object");
}

void addPackageArgument(CLI::App& command, std::string& package) {
    command.add_option("PACKAGE", package, "The package's directory, or its archive")
        ->type_name("DIR|FILE.tar")
        ->check(isPath())
        ->required();
}

CLI::Option* addRawOption(CLI::App& command, bool& raw) {
    return command.add_flag("--raw", raw,
                            "Files hold only the elements: little-endian, last dimension fastest");
}

CLI::Validator isPath() {
    return CLI::Validator(
        [](std::string& path) -> std::string {
            if (path.empty()) {
                return "a path must not be empty";
            }
            constexpr bool kBackslashSeparates = std::filesystem::path::preferred_separator == '\\';
            return kBackslashSeparates || path.find('\\') == std::string::npos
                       ? ""
                       : "a path must not contain a backslash: " + path;
        },
        "");
}

void defineCommandLine(CLI::App& app) {
    app.name("quavin");
    app.description("Builds, checks and runs packages of machine-learning models.");
    app.footer("\"quavin help COMMAND\" shows the options of a command.");
    app.set_help_flag("-h,--help", "Print this help and exit");
    app.set_version_flag("--version", std::string("quavin ") + VelmoraQuavin::getVersion(),
                         "Print the version and exit");
    // A path may begin with "/" on any system.
    app.allow_windows_style_options(false);
    app.require_subcommand(1);
    app.get_formatter()->label("SUBCOMMAND", "COMMAND");
    app.get_formatter()->label("REQUIRED", "(required)");
    addPackCommand(app);
    addInspectCommand(app);
    addVerifyCommand(app);
    addSignCommand(app);
    addRunCommand(app);
    addBenchCommand(app);
    addUnpackCommand(app);
    addEncryptCommand(app);
    addDecryptCommand(app);
    addKeygenCommand(app);
    addDoctorCommand(app);
    for (CLI::App* const command : app.get_subcommands(nullptr)) {
        command->group("Commands");
    }
    addHelpCommand(app);
}

}  // namespace quavin_tool
