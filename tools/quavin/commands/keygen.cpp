#include <array>
#include <memory>
#include <string>

#include "core/secure_wipe.h"
#include "tools/quavin/cli/command_line.h"
#include "tools/quavin/io/file.h"
#include "tools/quavin/io/new_path.h"
#include "tools/quavin/package/key.h"

namespace quavin_tool {
namespace {

struct KeygenOptions {
    std::string file;
    bool raw = false;
    OutputOptions output;
};

void makeKey(const KeygenOptions& options) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    requireAbsent(options.file);
    const Key key;
    std::array<char, 2 * kKeySize + 1> text{};
    const VelmoraQuavin::internal::WipeOnExit wipe(text.data(), text.size());
    for (std::size_t i = 0; i < kKeySize; ++i) {
        text.at(2 * i) = kDigits[key.bytes()[i] >> 4];
        text.at(2 * i + 1) = kDigits[key.bytes()[i] & 0xF];
    }
    text.back() = '\n';
    const std::string_view raw(reinterpret_cast<const char*>(key.bytes()), kKeySize);
    writePrivateFile(options.file, options.raw ? raw : std::string_view(text.data(), text.size()));
    say("Wrote a new key to " + options.file, options.output);
}

}  // namespace

void addKeygenCommand(CLI::App& app) {
    auto options = std::make_shared<KeygenOptions>();
    CLI::App* const command = app.add_subcommand(
        "keygen", "Creates a random key in a file that only its owner may read.");
    command->add_option("FILE", options->file, "The new file to write the key to")
        ->type_name("")
        ->check(isPath())
        ->required();
    command->add_flag("--raw", options->raw, "Write 16 raw bytes instead of 32 digits");
    addQuietOption(*command, options->output);
    command->callback([options] { makeKey(*options); });
}

}  // namespace quavin_tool
