// Generates the manual page of the command line from the definitions of its options.
//
//     quavin_make_man_page FILE

#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/process.h"
#include "quavin/version.h"
#include "tools/quavin/cli/command_line.h"

namespace {

// Escapes what roff would take for a request or an escape sequence.
std::string escaped(const std::string& text) {
    std::string result;
    if (!text.empty() && (text.front() == '.' || text.front() == '\'')) {
        result = "\\&";
    }
    for (const char character : text) {
        if (character == '\\') {
            result += "\\e";
        } else if (character == '-') {
            result += "\\-";
        } else {
            result += character;
        }
    }
    return result;
}

void writeOption(std::ostream& page, const CLI::Option& option) {
    page << ".TP\n\\fB" << escaped(option.get_name(false, true)) << "\\fR";
    if (option.get_expected_max() > 0 && option.get_type_size() > 0 && !option.get_positional()) {
        page << " \\fI" << escaped(option.get_type_name()) << "\\fR";
    }
    page << '\n' << escaped(option.get_description());
    if (option.get_required()) {
        page << " (required)";
    }
    if (!option.get_default_str().empty()) {
        page << " (default: " << escaped(option.get_default_str()) << ')';
    }
    page << ".\n";
}

void writeCommand(std::ostream& page, const CLI::App& command) {
    page << ".SS \"quavin " << command.get_name();
    for (const CLI::Option* option : command.get_options()) {
        if (option->get_positional()) {
            const std::string name = option->get_name(true);
            page << ' ' << (option->get_required() ? name : "[" + name + "]");
        }
    }
    page << "\"\n" << escaped(command.get_description()) << '\n';
    for (const CLI::Option* option : command.get_options()) {
        writeOption(page, *option);
    }
}

void writePage(std::ostream& page, const CLI::App& app) {
    page << R"(.TH QUAVIN 1 "" "quavin )" << VelmoraQuavin::getVersion() << R"(" "User Commands")"
         << "\n"
         << ".SH NAME\nquavin \\- build, check and run packages of machine\\-learning models\n"
         << ".SH SYNOPSIS\n.B quavin\n.I COMMAND\n[\\fIOPTION\\fR ...]\n"
         << ".SH DESCRIPTION\n"
         << escaped(app.get_description()) << '\n'
         << ".SH OPTIONS\n";
    for (const CLI::Option* option : app.get_options()) {
        writeOption(page, *option);
    }
    page << ".SH COMMANDS\n";
    for (const CLI::App* command : app.get_subcommands(nullptr)) {
        if (!command->get_group().empty()) {
            writeCommand(page, *command);
        }
    }
    page << ".SH EXIT STATUS\n0 on success, 1 on failure, 2 on incorrect usage.\n"
         << "Failures are reported on standard error, with the status code and text.\n";
}

}  // namespace

int main(int argc, char** argv) {
    try {
        CLI::App app;
        quavin_tool::defineCommandLine(app);
        const std::vector<std::string> arguments =
            VelmoraQuavin::internal::platform::programArguments(argc, argv);
        std::ofstream page(std::filesystem::u8path(arguments.size() == 1 ? arguments[0] : ""),
                           std::ios::binary);
        writePage(page, app);
        page.close();
        if (!page) {
            throw std::runtime_error("cannot write the page; usage: quavin_make_man_page FILE");
        }
        return 0;
    } catch (const std::exception& exception) {
        std::cerr << exception.what() << '\n';
        return 1;
    }
}
