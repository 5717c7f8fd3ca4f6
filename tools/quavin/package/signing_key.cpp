#include "tools/quavin/package/signing_key.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <optional>

#include "core/secure_wipe.h"
#include "platform/process.h"
#include "quavin/status.h"
#include "tools/quavin/cli/command_line.h"
#include "tools/quavin/io/file.h"
#include "tools/quavin/io/wiped_bytes.h"
#include "tools/quavin/package/owners_file.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::InvalidArgumentsException;
using VelmoraQuavin::internal::WipeOnExit;
namespace platform = VelmoraQuavin::internal::platform;

// The longest key or passphrase has about 1 KiB, but text may stand around or below it.
constexpr std::size_t kLargestFile = std::size_t{64} << 10;
// As long as OpenSSL allows.
constexpr std::size_t kLongestPassphrase = 1024;
// As long as a terminal allows.
constexpr std::size_t kLongestAnswer = 4096;

// Reads a file that must not be open to others.
WipedBytes readSecret(const std::string& path, bool allowOpenFile, std::size_t largest,
                      const std::string& what) {
    WipedBytes content(largest + 1);
    const std::size_t size =
        readOwnersFile(path, allowOpenFile, content.data(), content.size(), what + " " + path);
    if (size > largest) {
        throw InvalidArgumentsException(what + " " + path + " has more than " +
                                        std::to_string(largest) + " bytes");
    }
    content.truncate(size);
    return content;
}

WipedBytes askUser(const SigningOptions& options) {
    WipedBytes passphrase(kLongestAnswer + 1);
    const std::string prompt = "Passphrase of " + options.file + ": ";
    const std::optional<std::size_t> size = platform::askForPassphrase(
        prompt.c_str(), reinterpret_cast<char*>(passphrase.data()), passphrase.size());
    if (!size.has_value()) {
        throw InvalidArgumentsException("The private key " + options.file +
                                        " is encrypted: pass its passphrase with --passphrase-env "
                                        "or --passphrase-file, or run in a terminal");
    }
    passphrase.truncate(*size);
    return passphrase;
}

WipedBytes readVariable(const std::string& name) {
    std::optional<std::string> value = platform::environmentVariable(name);
    if (!value.has_value()) {
        throw InvalidArgumentsException("There is no environment variable " + name);
    }
    const WipeOnExit wipe(value->data(), value->size());
    return bytesOf(*value);
}

WipedBytes findPassphrase(const SigningOptions& options) {
    if (!options.passphraseVariable.empty()) {
        return readVariable(options.passphraseVariable);
    }
    if (options.passphraseFile.empty()) {
        return askUser(options);
    }
    WipedBytes text = readSecret(options.passphraseFile, options.allowOpenFile, kLargestFile,
                                 "The passphrase file");
    // The first line, as other tools read such files.
    text.truncate(std::min(text.text().find_first_of("\r\n"), text.text().size()));
    return text;
}

WipedBytes readPassphrase(const SigningOptions& options) {
    WipedBytes passphrase = findPassphrase(options);
    if (passphrase.size() > kLongestPassphrase) {
        throw InvalidArgumentsException("The passphrase of " + options.file + " has more than " +
                                        std::to_string(kLongestPassphrase) + " bytes");
    }
    return passphrase;
}

[[noreturn]] void refuse(const std::string& what, const std::string& problem) {
    throw InvalidArgumentsException(what + " cannot be used: " + problem);
}

}  // namespace

void addPassphraseOptions(CLI::App& command, SigningOptions& options) {
    CLI::Option* const variable =
        command
            .add_option("--passphrase-env", options.passphraseVariable,
                        "Decrypt the private key with the passphrase in the environment variable "
                        "NAME")
            ->type_name("NAME");
    command
        .add_option("--passphrase-file", options.passphraseFile,
                    "Decrypt it with the passphrase in the first line of FILE")
        ->type_name("FILE")
        ->check(isPath())
        ->excludes(variable);
}

SigningKey::SigningKey(const SigningOptions& options) {
    const WipedBytes pem =
        readSecret(options.file, options.allowOpenFile, kLargestFile, "The private key");
    read(pem.text(), options);
    std::string problem;
    std::optional<TrustedKey> half =
        VelmoraQuavin::internal::readPublicKeyInfo(key_.publicInfo(), problem);
    if (!half.has_value()) {
        refuse("The private key " + options.file, problem);
    }
    publicKey_ = *std::move(half);
}

void SigningKey::read(std::string_view pem, const SigningOptions& options) {
    std::string problem;
    platform::PrivateKeyReading reading = key_.read(pem, std::nullopt, problem);
    if (reading == platform::PrivateKeyReading::kNeedsPassphrase) {
        const WipedBytes passphrase = readPassphrase(options);
        reading = key_.read(pem, passphrase.text(), problem);
    }
    if (reading != platform::PrivateKeyReading::kDone) {
        refuse("The private key " + options.file, problem);
    }
}

std::string SigningKey::sign(const SignedFiles& files) const {
    return VelmoraQuavin::internal::signFiles(files, key_, publicKey_);
}

NamedKey readPublicKeyFile(const std::string& path) {
    const WipedBytes pem = readFile(path);
    std::string problem;
    std::optional<TrustedKey> key = VelmoraQuavin::internal::readPublicKey(pem.text(), problem);
    if (!key.has_value()) {
        refuse("The public key " + path, problem);
    }
    return {path, std::string(pem.text()), *std::move(key)};
}

}  // namespace quavin_tool
