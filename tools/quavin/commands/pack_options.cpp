#include "tools/quavin/commands/pack_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>

#include "package/archive/tar_entry_path.h"
#include "quavin/status.h"
#include "tools/quavin/io/new_path.h"
#include "tools/quavin/io/path_text.h"

namespace quavin_tool {
namespace {

constexpr const char* kDescriptionForm = "NAME=TEXT";

// In lower case; empty for a path that ends in a separator, which is a directory's.
std::string endingOf(const std::string& path) {
    const std::string name = toAsciiLower(std::filesystem::u8path(path).filename().u8string());
    return name.substr(std::min(name.rfind('.'), name.size()));
}

// A directory with such a name would be mistaken for an archive.
void requireNoOtherArchive(const PackOptions& options) {
    constexpr std::array<std::string_view, 16> kOthers{
        ".zip", ".gz",   ".tgz", ".bz2",  ".tbz", ".tbz2", ".xz",  ".txz",
        ".zst", ".tzst", ".7z",  ".lzma", ".lz",  ".lz4",  ".rar", ".z"};
    const std::string ending = endingOf(options.result);
    if (std::find(kOthers.begin(), kOthers.end(), ending) != kOthers.end()) {
        throw CLI::ValidationError(
            "--output", "ends in " + ending + ", which is not supported: an archive ends in .tar");
    }
}

}  // namespace

void addPackOptions(CLI::App& command, PackOptions& options) {
    command.add_option("NETWORK", options.network, "The network as OpenVINO IR (.xml)")
        ->type_name("FILE")
        ->check(isPath())
        ->required();
    command
        .add_option("WEIGHTS", options.weights,
                    "Its weights (.bin); by default the file next to it")
        ->type_name("FILE")
        ->check(isPath());
    command
        .add_option("-o,--output", options.result,
                    "The new directory, or the new archive if it ends in .tar")
        ->type_name("DIR|FILE.tar")
        ->check(isPath())
        ->required();
    const auto addText = [&command](const char* name, std::string& value, const char* description) {
        command.add_option(name, value, description)->type_name("TEXT");
    };
    addText("--id", options.identity.id,
            "The model's id; by default the file's name without its extension");
    addText("--name", options.identity.name,
            "The model's name; by default the file's name without its extension");
    addText("--author", options.identity.author, "The model's author");
    addText("--description", options.identity.description, "What the model does");
    addText("--sdk-version", options.identity.sdkVersion,
            "The SDK version, for hosts to interpret");
    command.add_option("--model-version", options.identity.version, "The model's version")
        ->type_name("NUMBER")
        ->capture_default_str();
    addNamedValuesOption(command, "--describe", options.descriptions, kDescriptionForm,
                         "Describe an input or output; repeat for others");
    addText("--root", options.root,
            "The directory in the archive; by default the archive's name without .tar");
    command
        .add_option("--encrypt", options.encrypt,
                    "Encrypt the network's files (components) or everything (archive)")
        ->check(CLI::IsMember({"components", "archive"}).description(""))
        ->type_name("components|archive");
    addKeyOptions(command, options.key);
    command
        .add_option("--sign", options.signing.file,
                    "Sign the package with the private key in FILE, in PEM, on the curve P-256 or "
                    "P-384")
        ->type_name("FILE")
        ->check(isPath());
    addPassphraseOptions(command, options.signing);
    addOutputOptions(command, options.output);
}

void checkPackOptions(const PackOptions& options) {
    requireNoOtherArchive(options);
    portDescriptions(options);
    const bool encrypts = !options.encrypt.empty();
    if (encrypts && !options.key.given()) {
        throw CLI::ValidationError("--encrypt", "needs --key-file or --key-env");
    }
    if (!encrypts && options.key.given()) {
        throw CLI::ValidationError("--key-file", "is given without --encrypt");
    }
    const SigningOptions& signing = options.signing;
    if (signing.file.empty() &&
        !(signing.passphraseVariable.empty() && signing.passphraseFile.empty())) {
        throw CLI::ValidationError("a passphrase", "is given without --sign");
    }
    if (encryptsArchive(options) && !makesArchive(options)) {
        throw CLI::ValidationError("--encrypt archive", "needs an --output that ends in .tar");
    }
    if (!options.root.empty() && !makesArchive(options)) {
        throw CLI::ValidationError("--root", "needs an --output that ends in .tar");
    }
}

NamedValues portDescriptions(const PackOptions& options) {
    return parseNamedValues("--describe", kDescriptionForm, options.descriptions);
}

bool makesArchive(const PackOptions& options) {
    return endingOf(options.result) == ".tar";
}

bool encryptsArchive(const PackOptions& options) {
    return options.encrypt == "archive";
}

std::string rootName(const PackOptions& options) {
    std::string root = options.root.empty() ? stemOf(options.result) : options.root;
    if (root.find_first_of(" \t\n\v\f\r/\\") != std::string::npos || root == "." ||
        !VelmoraQuavin::internal::parseTarEntryPath(root).refusal.empty()) {
        throw VelmoraQuavin::InvalidArgumentsException(
            "\"" + root +
            "\" cannot be the archive's directory, since not every host can unpack such a name: "
            "choose another with --root, without white space or separators");
    }
    requirePortableName(root, "choose another --root");
    return root;
}

}  // namespace quavin_tool
