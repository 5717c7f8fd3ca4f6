#include <algorithm>
#include <array>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "package/archive/tar_entry_path.h"
#include "tools/quavin/cli/command_line.h"
#include "tools/quavin/cli/printing.h"
#include "tools/quavin/io/file.h"
#include "tools/quavin/io/new_path.h"
#include "tools/quavin/io/path_text.h"
#include "tools/quavin/io/temporary_directory.h"
#include "tools/quavin/io/wiped_bytes.h"
#include "tools/quavin/package/key.h"
#include "tools/quavin/package/package_builder.h"
#include "tools/quavin/package/secured_bytes.h"
#include "tools/quavin/package/tar_writer.h"

namespace quavin_tool {
namespace {

namespace fs = std::filesystem;
using VelmoraQuavin::InvalidArgumentsException;
using VelmoraQuavin::ModelFeatureDescriptor;

struct Options {
    std::string network;
    std::string weights;
    std::string result;
    std::string root;
    Identity identity;
    std::string encrypt;  // "components", "archive" or empty
    KeyOptions key;
    OutputOptions output;
};

using Package = std::vector<PackageFile>;

bool encryptsArchive(const Options& options) {
    return options.encrypt == "archive";
}

// In lower case; empty for a path that ends in a separator, which is a directory's.
std::string endingOf(const std::string& path) {
    const std::string name = toAsciiLower(fs::u8path(path).filename().u8string());
    return name.substr(std::min(name.rfind('.'), name.size()));
}

bool makesArchive(const Options& options) {
    return endingOf(options.result) == ".tar";
}

// A directory with such a name would be mistaken for an archive.
void requireNoOtherArchive(const Options& options) {
    constexpr std::array<std::string_view, 16> kOthers{
        ".zip", ".gz",   ".tgz", ".bz2",  ".tbz", ".tbz2", ".xz",  ".txz",
        ".zst", ".tzst", ".7z",  ".lzma", ".lz",  ".lz4",  ".rar", ".z"};
    const std::string ending = endingOf(options.result);
    if (std::find(kOthers.begin(), kOthers.end(), ending) != kOthers.end()) {
        throw CLI::ValidationError(
            "--output", "ends in " + ending + ", which is not supported: an archive ends in .tar");
    }
}

// Checks the command line itself.
void checkOptions(const Options& options) {
    requireNoOtherArchive(options);
    const bool encrypts = !options.encrypt.empty();
    if (encrypts && !options.key.given()) {
        throw CLI::ValidationError("--encrypt", "needs --key-file or --key-env");
    }
    if (!encrypts && options.key.given()) {
        throw CLI::ValidationError("--key-file", "is given without --encrypt");
    }
    if (encryptsArchive(options) && !makesArchive(options)) {
        throw CLI::ValidationError("--encrypt archive", "needs an --output that ends in .tar");
    }
    if (!options.root.empty() && !makesArchive(options)) {
        throw CLI::ValidationError("--root", "needs an --output that ends in .tar");
    }
}

// The archive's directory, under a name that both overloads of extractTarball() accept.
std::string rootName(const Options& options) {
    std::string root = options.root.empty() ? stemOf(options.result) : options.root;
    if (root.find_first_of(" \t\n\v\f\r/\\") != std::string::npos || root == "." ||
        !VelmoraQuavin::internal::parseTarEntryPath(root).refusal.empty()) {
        throw InvalidArgumentsException(
            "\"" + root +
            "\" cannot be the archive's directory, since not every host can unpack such a name: "
            "choose another with --root, without white space or separators");
    }
    requirePortableName(root, "choose another --root");
    return root;
}

Identity fillIn(Identity identity, const Options& options) {
    const std::string stem = stemOf(options.network);
    identity.id = identity.id.empty() ? stem : identity.id;
    identity.name = identity.name.empty() ? stem : identity.name;
    return identity;
}

void writeArchive(const Options& options, const Package& package, const Key* key,
                  const std::string& path) {
    const std::string root = rootName(options) + "/";
    TarWriter tar;
    tar.addDirectory(root);
    for (const PackageFile& file : package) {
        tar.addFile(root + file.name, file.content.text());
    }
    const WipedBytes archive = tar.finish();
    if (encryptsArchive(options)) {
        writeNewFile(path, encrypt(archive.text(), *key).text());
    } else {
        writeNewFile(path, archive.text());
    }
}

void printJson(const Options& options, const Package& package, const NetworkFiles& network) {
    JsonOutput json;
    json.beginObject();
    json.member("output", options.result);
    json.beginArray("files");
    for (const PackageFile& file : package) {
        json.beginObject();
        json.member("name", file.name);
        json.member("bytes", file.content.size());
        json.endObject();
    }
    json.endArray();
    json.ports("inputs", network.inputs);
    json.ports("outputs", network.outputs);
    json.endObject();
    std::cout << json.text() << '\n';
}

void print(const Options& options, const NetworkFiles& network) {
    std::vector<std::vector<std::string>> rows;
    for (const auto& [name, ports] :
         {std::pair{"input", &network.inputs}, std::pair{"output", &network.outputs}}) {
        for (const ModelFeatureDescriptor& port : *ports) {
            rows.push_back({name, printable(port.name()),
                            typeName(port.tensorDescriptor().tensorType()),
                            shapeText(port.tensorDescriptor())});
        }
    }
    std::string text = "Packed " + options.network + " as " + options.result + "\n" + table(rows);
    text.pop_back();  // the last line break
    say(text, options.output);
}

void pack(const Options& options) {
    checkOptions(options);
    requirePortableName(options.result, "choose another --output");
    requireAbsent(options.result);
    if (makesArchive(options)) {
        rootName(options);
    }
    const std::unique_ptr<Key> key = readKey(options.key);
    const NetworkFiles network = readFilesToPack(options.network, options.weights);
    const Identity identity = fillIn(options.identity, options);

    // Built next to its destination and moved there complete, so that a failure leaves no partial
    // package.
    fs::path target = fs::absolute(fs::u8path(options.result));
    target = target.has_filename() ? target : target.parent_path();
    const std::string place = target.parent_path().u8string();
    NewDirectories parents(place);
    const TemporaryDirectory stage(place);
    const std::string directory = join(stage.path(), "package");
    NewDirectories(directory).keep();

    // The content of an encrypted archive is tried as files secured with a throwaway key, so that
    // nothing plain is written to disk.
    const Key throwaway;
    const Key* const trialKey = encryptsArchive(options) ? &throwaway : key.get();
    Package package = makePackage(identity, network, trialKey);
    writeAndTry(package, directory, trialKey);

    std::string result = directory;
    if (makesArchive(options)) {
        if (encryptsArchive(options)) {
            package = makePackage(identity, network, nullptr);
        }
        result = join(stage.path(), "archive");
        writeArchive(options, package, key.get(), result);
    }
    moveToNew(result, target.u8string(), options.result);
    parents.keep();
    if (options.output.json) {
        printJson(options, package, network);
    } else {
        print(options, network);
    }
}

}  // namespace

void addPackCommand(CLI::App& app) {
    auto options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("pack", "Creates a package, or an archive of one, from a network.");
    command->add_option("NETWORK", options->network, "The network as OpenVINO IR (.xml)")
        ->type_name("FILE")
        ->check(isPath())
        ->required();
    command
        ->add_option("WEIGHTS", options->weights,
                     "Its weights (.bin); by default the file next to it")
        ->type_name("FILE")
        ->check(isPath());
    command
        ->add_option("-o,--output", options->result,
                     "The new directory, or the new archive if it ends in .tar")
        ->type_name("DIR|FILE.tar")
        ->check(isPath())
        ->required();
    const auto addText = [command](const char* name, std::string& value, const char* description) {
        command->add_option(name, value, description)->type_name("TEXT");
    };
    addText("--id", options->identity.id,
            "The model's id; by default the file's name without its extension");
    addText("--name", options->identity.name,
            "The model's name; by default the file's name without its extension");
    addText("--author", options->identity.author, "The model's author");
    addText("--description", options->identity.description, "What the model does");
    addText("--sdk-version", options->identity.sdkVersion,
            "The SDK version, for hosts to interpret");
    command->add_option("--model-version", options->identity.version, "The model's version")
        ->type_name("NUMBER")
        ->capture_default_str();
    addText("--root", options->root,
            "The directory in the archive; by default the archive's name without .tar");
    command
        ->add_option("--encrypt", options->encrypt,
                     "Encrypt the network's files (components) or everything (archive)")
        ->check(CLI::IsMember({"components", "archive"}).description(""))
        ->type_name("components|archive");
    addKeyOptions(*command, options->key);
    addOutputOptions(*command, options->output);
    command->callback([options] { pack(*options); });
}

}  // namespace quavin_tool
