#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "command_line.h"
#include "files.h"
#include "key.h"
#include "manifest_text.h"
#include "package.h"
#include "printing.h"
#include "quavin/network.h"
#include "secured_bytes.h"
#include "tar_text.h"
#include "temporary_directory.h"

namespace quavin_tool {
namespace {

namespace fs = std::filesystem;
using VelmoraQuavin::Filepath;
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

struct PackageFile {
    std::string name;
    Bytes content;
};

struct Package {
    Descriptors inputs;
    Descriptors outputs;
    std::vector<PackageFile> files;
};

constexpr std::string_view kManifest = "manifest.json";
constexpr std::string_view kArchiveEnding = ".tar";

bool endsWith(std::string_view text, std::string_view ending) {
    return text.size() >= ending.size() && text.substr(text.size() - ending.size()) == ending;
}

bool encryptsComponents(const Options& options) {
    return options.encrypt == "components";
}

bool encryptsArchive(const Options& options) {
    return options.encrypt == "archive";
}

bool makesArchive(const Options& options) {
    return endsWith(options.result, kArchiveEnding);
}

std::string stemOf(const std::string& path) {
    return fs::u8path(fileName(path)).stem().u8string();
}

void checkOptions(const Options& options) {
    const bool encrypts = !options.encrypt.empty();
    if (encrypts && !options.key.given()) {
        throw CLI::ValidationError("--encrypt", "needs --key-file or --key-env");
    }
    if (!encrypts && options.key.given()) {
        throw CLI::ValidationError("--key-file", "is given, but nothing to --encrypt");
    }
    if (encryptsArchive(options) && !makesArchive(options)) {
        throw CLI::ValidationError("--encrypt archive", "needs an --output that ends in .tar");
    }
    if (!options.root.empty() && !makesArchive(options)) {
        throw CLI::ValidationError("--root", "is for an --output that ends in .tar");
    }
}

// The weights beside the network, where they are not named; none for a network without constants.
std::string findWeights(const Options& options) {
    if (!options.weights.empty()) {
        return options.weights;
    }
    const std::string beside = fs::u8path(options.network).replace_extension(".bin").u8string();
    std::error_code ignored;
    return fs::exists(fs::u8path(beside), ignored) ? beside : "";
}

void checkInput(const ModelFeatureDescriptor& input) {
    const VelmoraQuavin::TensorDescriptor& tensor = input.tensorDescriptor();
    const std::string name = "The input \"" + printable(input.name()) + "\"";
    if (!isInputType(tensor.tensorType())) {
        throw VelmoraQuavin::InvalidTensorDataTypeException(
            name + " has the element type " + typeName(tensor.tensorType()) +
            ", and predictions take float, int8, int16 and int32: convert the network's input, "
            "for example with a Convert layer behind an int32 input");
    }
    if (tensor.shape().size() == 0) {
        throw InvalidArgumentsException(name + " has no elements (shape " +
                                        shapeText(tensor.shape()) +
                                        "): export the network with another shape");
    }
}

void describe(const Options& options, const std::string& weights, Package& package) {
    const VelmoraQuavin::QuavinStatus status = VelmoraQuavin::describeNetwork(
        Filepath(options.network), Filepath(weights), package.inputs, package.outputs);
    if (!status.ok()) {
        const std::string text = status.getDescription().str();
        std::string advice = "; what can be packed is OpenVINO IR of version 10 or 11";
        if (text.find("dynamic dimensions") != std::string::npos) {
            advice = "; export it with fixed dimensions";
        } else if (weights.empty()) {
            advice = "; there is no .bin file beside it: name its weights if it has any";
        }
        throw VelmoraQuavin::Exception(options.network + " cannot be packed: " + text + advice,
                                       status.getCode());
    }
    if (package.inputs.empty() || package.outputs.empty()) {
        throw InvalidArgumentsException(options.network +
                                        " has no inputs or no outputs, and a package needs both");
    }
    std::for_each(package.inputs.begin(), package.inputs.end(), checkInput);
}

std::vector<std::string> namesInPackage(const Options& options, const std::string& weights) {
    const std::string network = fileName(options.network);
    std::string constants = weights.empty() ? stemOf(network) + ".bin" : fileName(weights);
    if (network == constants || network == kManifest || constants == kManifest) {
        throw InvalidArgumentsException(
            "The network, its weights and \"manifest.json\" need names of their own, not " +
            network + " and " + constants);
    }
    return {network, std::move(constants)};
}

Bytes bytesOf(std::string_view text) {
    Bytes bytes(text.size());
    std::copy(text.begin(), text.end(), bytes.data());
    return bytes;
}

Identity fillIn(Identity identity, const Options& options) {
    const std::string stem = stemOf(options.network);
    identity.id = identity.id.empty() ? stem : identity.id;
    identity.name = identity.name.empty() ? stem : identity.name;
    return identity;
}

Package makePackage(const Options& options, const Key* key) {
    const std::string weights = findWeights(options);
    Package package;
    describe(options, weights, package);
    const std::vector<std::string> names = namesInPackage(options, weights);
    const bool secured = encryptsComponents(options);

    Bytes contents[] = {readFile(options.network), weights.empty() ? Bytes(0) : readFile(weights)};
    package.files.push_back(
        {std::string(kManifest), bytesOf(manifestText(fillIn(options.identity, options), names,
                                                      secured, package.inputs, package.outputs))});
    for (std::size_t i = 0; i < names.size(); ++i) {
        package.files.push_back(
            {names[i], secured ? encrypt(contents[i].text(), *key) : std::move(contents[i])});
    }
    return package;
}

// What is written is what was tried: the package is loaded from its files and predicts once.
void tryPackage(const std::string& directory, const Key* key) {
    const Metadata metadata = readManifest(directory);
    if (key != nullptr) {
        setKey(engineTarget(*metadata), *key);
    }
    const std::shared_ptr<VelmoraQuavin::QuavinModel> model = loadModel(metadata);
    predict(*model, zeroInputs(*model));
}

std::string rootName(const Options& options) {
    std::string root = options.root.empty() ? stemOf(options.result) : options.root;
    if (root.empty() || root.find_first_of(" \t\n\v\f\r/\\") != std::string::npos || root == "." ||
        root == "..") {
        throw InvalidArgumentsException(
            "\"" + root +
            "\" cannot be the archive's directory, since not every host unpacks such a name: "
            "choose another with --root, without white space and separators");
    }
    return root;
}

void writeArchive(const Options& options, const Package& package, const Key* key,
                  const std::string& path) {
    const std::string root = rootName(options) + "/";
    TarText tar;
    tar.addDirectory(root);
    for (const PackageFile& file : package.files) {
        tar.addFile(root + file.name, file.content.text());
    }
    const Bytes archive = tar.finish();
    if (encryptsArchive(options)) {
        writeFile(path, encrypt(archive.text(), *key).text());
    } else {
        writeFile(path, archive.text());
    }
}

void report(const Options& options, const Package& package) {
    if (options.output.json) {
        JsonOutput json;
        json.beginObject();
        json.member("output", options.result);
        json.beginArray("files");
        for (const PackageFile& file : package.files) {
            json.beginObject();
            json.member("name", file.name);
            json.member("bytes", file.content.size());
            json.endObject();
        }
        json.endArray();
        for (const auto& [name, ports] :
             {std::pair{"inputs", &package.inputs}, std::pair{"outputs", &package.outputs}}) {
            json.beginArray(name);
            for (const ModelFeatureDescriptor& port : *ports) {
                json.port(port);
            }
            json.endArray();
        }
        json.endObject();
        std::cout << json.text() << '\n';
        return;
    }
    std::vector<std::vector<std::string>> rows;
    for (const auto& [name, ports] :
         {std::pair{"input", &package.inputs}, std::pair{"output", &package.outputs}}) {
        for (const ModelFeatureDescriptor& port : *ports) {
            rows.push_back({name, printable(port.name()),
                            typeName(port.tensorDescriptor().tensorType()),
                            shapeText(port.tensorDescriptor())});
        }
    }
    std::string text = "Packed " + options.network + " as " + options.result + "\n" + table(rows);
    text.pop_back();
    say(text, options.output);
}

void pack(const Options& options) {
    checkOptions(options);
    requireAbsent(options.result);
    if (makesArchive(options)) {
        rootName(options);
    }
    const std::unique_ptr<Key> key =
        options.key.given() ? std::make_unique<Key>(options.key) : nullptr;
    const Package package = makePackage(options, key.get());

    // Made beside its place and moved there whole, so that no half of a package is left behind.
    fs::path target = fs::absolute(fs::u8path(options.result));
    target = target.has_filename() ? target : target.parent_path();
    makeDirectories(target.parent_path().u8string());
    const TemporaryDirectory stage(target.parent_path().u8string());
    const std::string directory = join(stage.path(), "package");
    makeDirectories(directory);
    for (const PackageFile& file : package.files) {
        writeFile(join(directory, file.name), file.content.text());
    }
    tryPackage(directory, encryptsComponents(options) ? key.get() : nullptr);

    std::string result = directory;
    if (makesArchive(options)) {
        result = join(stage.path(), "archive");
        writeArchive(options, package, key.get(), result);
    }
    fs::rename(fs::u8path(result), target);
    report(options, package);
}

}  // namespace

void addPackCommand(CLI::App& app) {
    auto options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("pack", "Makes a package, or an archive of one, from a network.");
    command->add_option("NETWORK", options->network, "The network, OpenVINO IR (.xml)")
        ->type_name("FILE")
        ->required();
    command
        ->add_option("WEIGHTS", options->weights,
                     "Its weights (.bin); by default the file beside it")
        ->type_name("FILE");
    command
        ->add_option("-o,--output", options->result,
                     "The new directory, or the new archive if it ends in .tar")
        ->type_name("DIR|FILE.tar")
        ->required();
    const auto addText = [command](const char* name, std::string& value, const char* description) {
        command->add_option(name, value, description)->type_name("TEXT");
    };
    addText("--id", options->identity.id,
            "The model's id; by default the file's name without its ending");
    addText("--name", options->identity.name, "The model's name; by default as the id");
    addText("--author", options->identity.author, "The model's author");
    addText("--description", options->identity.description, "What the model does");
    addText("--sdk-version", options->identity.sdkVersion, "A mark for hosts");
    command->add_option("--model-version", options->identity.version, "The model's version")
        ->type_name("NUMBER")
        ->capture_default_str();
    addText("--root", options->root,
            "The directory in the archive; by default the archive's file name");
    command
        ->add_option("--encrypt", options->encrypt,
                     "Encrypt the network's files (components) or all (archive)")
        ->check(CLI::IsMember({"components", "archive"}).description(""))
        ->type_name("components|archive");
    addKeyOptions(*command, options->key);
    addOutputOptions(*command, options->output);
    command->callback([options] { pack(*options); });
}

}  // namespace quavin_tool
