#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "package/signature/verify_signature.h"
#include "tools/quavin/cli/command_line.h"
#include "tools/quavin/cli/printing.h"
#include "tools/quavin/commands/pack_options.h"
#include "tools/quavin/io/file.h"
#include "tools/quavin/io/new_path.h"
#include "tools/quavin/io/path_text.h"
#include "tools/quavin/io/temporary_directory.h"
#include "tools/quavin/io/wiped_bytes.h"
#include "tools/quavin/package/key.h"
#include "tools/quavin/package/package_builder.h"
#include "tools/quavin/package/package_digests.h"
#include "tools/quavin/package/secured_bytes.h"
#include "tools/quavin/package/signing_key.h"
#include "tools/quavin/package/tar_writer.h"

namespace quavin_tool {
namespace {

namespace fs = std::filesystem;
using VelmoraQuavin::InvalidArgumentsException;
using VelmoraQuavin::ModelFeatureDescriptor;
using VelmoraQuavin::internal::kSignatureName;

using Package = std::vector<PackageFile>;

Identity fillIn(Identity identity, const PackOptions& options) {
    const std::string stem = stemOf(options.network);
    identity.id = identity.id.empty() ? stem : identity.id;
    identity.name = identity.name.empty() ? stem : identity.name;
    return identity;
}

std::unique_ptr<SigningKey> readSigningKey(const PackOptions& options) {
    if (options.signing.file.empty()) {
        return nullptr;
    }
    SigningOptions signing = options.signing;
    signing.allowOpenFile = options.key.allowOpenFile;
    return std::make_unique<SigningKey>(signing);
}

// Adds the signature if there is a key to make it with.
void addSignature(const SigningKey* key, Package& package) {
    if (key == nullptr) {
        return;
    }
    const VelmoraQuavin::internal::Statement never{{}, VelmoraQuavin::internal::unsignedPaths()};
    SignedFiles files;
    for (const PackageFile& file : package) {
        if (never.leavesOut(file.name)) {
            throw InvalidArgumentsException("A signed package cannot have a file " + file.name +
                                            " of its own: rename it");
        }
        files.emplace(file.name, digestOf(file.content.text()));
    }
    package.push_back({kSignatureName, bytesOf(key->sign(files))});
}

void writeArchive(const PackOptions& options, const Package& package, const Key* key,
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

void printJson(const PackOptions& options, const Package& package, const NetworkFiles& network) {
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

void print(const PackOptions& options, const NetworkFiles& network) {
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

void pack(const PackOptions& options) {
    checkPackOptions(options);
    requirePortableName(options.result, "choose another --output");
    requireAbsent(options.result);
    if (makesArchive(options)) {
        rootName(options);
    }
    const std::unique_ptr<Key> key = readKey(options.key);
    const std::unique_ptr<SigningKey> signingKey = readSigningKey(options);
    NetworkFiles network = readFilesToPack(options.network, options.weights);
    describePorts(portDescriptions(options), network);
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

    Package package;
    if (encryptsArchive(options)) {
        // Its content is tried as files secured with a throwaway key, so that nothing plain is
        // written to disk. Nobody is to find those signed.
        const Key throwaway;
        writeAndTry(makePackage(identity, network, &throwaway), directory, &throwaway);
        package = makePackage(identity, network, nullptr);
        addSignature(signingKey.get(), package);
    } else {
        package = makePackage(identity, network, key.get());
        addSignature(signingKey.get(), package);
        writeAndTry(package, directory, key.get());
    }

    std::string result = directory;
    if (makesArchive(options)) {
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
    auto options = std::make_shared<PackOptions>();
    CLI::App* const command =
        app.add_subcommand("pack", "Creates a package, or an archive of one, from a network.");
    addPackOptions(*command, *options);
    command->callback([options] { pack(*options); });
}

}  // namespace quavin_tool
