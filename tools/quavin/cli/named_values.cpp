#include "tools/quavin/cli/named_values.h"

#include <CLI/CLI.hpp>

namespace quavin_tool {

CLI::Option* addNamedValuesOption(CLI::App& command, const char* names,
                                  std::vector<std::string>& arguments, const char* form,
                                  const char* description) {
    return command.add_option(names, arguments, description)
        ->type_name(form)
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

NamedValues parseNamedValues(const char* option, const char* form,
                             const std::vector<std::string>& arguments) {
    NamedValues values;
    for (const std::string& argument : arguments) {
        const std::size_t equals = argument.find('=');
        if (equals == std::string::npos || equals == 0 || equals + 1 == argument.size()) {
            throw CLI::ValidationError(option, std::string("takes ") + form + ", not " + argument);
        }
        const std::string name = argument.substr(0, equals);
        if (!values.emplace(name, argument.substr(equals + 1)).second) {
            throw CLI::ValidationError(option, name + " is given more than once");
        }
    }
    return values;
}

}  // namespace quavin_tool
