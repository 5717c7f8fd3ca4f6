#include <memory>
#include <optional>
#include <string>

#include "tools/quavin/cli/command_line.h"
#include "tools/quavin/cli/printing.h"
#include "tools/quavin/io/file.h"
#include "tools/quavin/io/new_path.h"
#include "tools/quavin/io/wiped_bytes.h"
#include "tools/quavin/package/key.h"
#include "tools/quavin/package/secured_bytes.h"

namespace quavin_tool {
namespace {

struct CryptOptions {
    std::string input;
    std::string result;
    KeyOptions key;
    bool keepPadding = false;
    OutputOptions output;
};

void requireKey(const KeyOptions& key) {
    if (!key.given()) {
        throw CLI::RequiredError("--key-file or --key-env");
    }
}

void encryptFile(const CryptOptions& options) {
    requireKey(options.key);
    requireAbsent(options.result);
    const Key key(options.key);
    const WipedBytes plain = readFile(options.input);
    const WipedBytes secured = encrypt(plain.text(), key);
    writeNewFile(options.result, secured.text());
    say("Encrypted " + options.input + " (" + readableSize(plain.size()) + ") as " +
            options.result + " (" + readableSize(secured.size()) + ")",
        options.output);
}

void decryptFile(const CryptOptions& options) {
    requireKey(options.key);
    requireAbsent(options.result);
    const Key key(options.key);
    WipedBytes plain = decrypt(readFile(options.input), key.bytes(), options.input);
    if (!options.keepPadding) {
        const std::optional<std::uint64_t> padding = paddingOf(plain.text());
        if (!padding.has_value()) {
            throw VelmoraQuavin::FileException(
                options.input +
                " does not end in PKCS#7 padding: the key is wrong, the file is damaged, or it was "
                "encrypted without padding (then pass --keep-padding)");
        }
        plain.truncate(plain.size() - *padding);
    }
    writePrivateFile(options.result, plain.text());
    say("Decrypted " + options.input + " as " + options.result + " (" + readableSize(plain.size()) +
            ")",
        options.output);
}

// The options common to both.
CLI::App* addCommand(CLI::App& app, const char* name, const char* description,
                     const std::shared_ptr<CryptOptions>& options) {
    CLI::App* const command = app.add_subcommand(name, description);
    command->add_option("INPUT", options->input, "The file to read")
        ->type_name("FILE")
        ->check(isPath())
        ->required();
    command->add_option("OUTPUT", options->result, "The new file to write")
        ->type_name("FILE")
        ->check(isPath())
        ->required();
    addKeyOptions(*command, options->key);
    addQuietOption(*command, options->output);
    return command;
}

}  // namespace

void addEncryptCommand(CLI::App& app) {
    auto options = std::make_shared<CryptOptions>();
    addCommand(app, "encrypt", "Encrypts a file in the form of a package's secured files.", options)
        ->callback([options] { encryptFile(*options); });
}

void addDecryptCommand(CLI::App& app) {
    auto options = std::make_shared<CryptOptions>();
    CLI::App* const command = addCommand(
        app, "decrypt", "Decrypts a secured file into one that only its owner may read.", options);
    command->add_flag("--keep-padding", options->keepPadding,
                      "Keep the padding of the last block, as loading does");
    command->callback([options] { decryptFile(*options); });
}

}  // namespace quavin_tool
