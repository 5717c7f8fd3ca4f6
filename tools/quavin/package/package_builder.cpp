#include "tools/quavin/package/package_builder.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <utility>

#include "tools/quavin/check/conversion.h"
#include "tools/quavin/check/network_text.h"
#include "tools/quavin/check/trial.h"
#include "tools/quavin/cli/printing.h"
#include "tools/quavin/io/casting.h"
#include "tools/quavin/io/file.h"
#include "tools/quavin/io/new_path.h"
#include "tools/quavin/io/path_text.h"
#include "tools/quavin/io/require.h"
#include "tools/quavin/io/wiped_bytes.h"
#include "tools/quavin/package/secured_bytes.h"

namespace quavin_tool {
namespace {

namespace fs = std::filesystem;
using VelmoraQuavin::InvalidArgumentsException;
using VelmoraQuavin::ModelFeatureDescriptor;

// The named weights, or else the file next to the network; empty for a network without constants.
std::string findWeights(const std::string& network, const std::string& weights) {
    if (!weights.empty()) {
        return weights;
    }
    const std::string beside = fs::u8path(network).replace_extension(".bin").u8string();
    return isThere(beside) ? beside : "";
}

void checkInput(const ModelFeatureDescriptor& input) {
    const VelmoraQuavin::TensorDescriptor& tensor = input.tensorDescriptor();
    const std::string name = "The input \"" + input.name().str() + "\"";
    if (!isInputType(tensor.tensorType())) {
        throw VelmoraQuavin::InvalidTensorDataTypeException(
            name + " has the element type " + typeName(tensor.tensorType()) +
            ", but predictions take only float, int8, int16 and int32: convert the network's "
            "input, for example with a Convert layer after an int32 input");
    }
    if (tensor.shape().size() == 0) {
        throw InvalidArgumentsException(name + " has no elements (shape " +
                                        shapeText(tensor.shape()) +
                                        "): export the network with a different shape");
    }
}

void requireNoCrash(const Trial& trial, const std::string& network) {
    if (!trial.crash.empty()) {
        throw VelmoraQuavin::Exception(network + " cannot be packed: " + trial.crash,
                                       VelmoraQuavin::ML_FRAMEWORK_ERROR);
    }
}

// Advice on what to do; the engine says why it cannot read the network.
std::string adviceOn(const std::string& network, std::string_view networkText,
                     const std::string& weights) {
    std::string advice = fixedDimensionsAdvice(network, networkText);
    if (!advice.empty()) {
        return advice;
    }
    return weights.empty() ? "there is no .bin file next to it: name its weights if it has any"
                           : "only OpenVINO IR of version " QUAVIN_IR_VERSIONS
                             " with fixed dimensions can be packed";
}

void describe(const std::string& network, const std::string& weights, NetworkFiles& files) {
    const std::string_view text = files.contents.front().text();
    Trial trial = tryToDescribe(network, weights);
    requireNoCrash(trial, network);
    const VelmoraQuavin::QuavinStatus& status = trial.status;
    if (!status.ok()) {
        throw VelmoraQuavin::Exception(network + " cannot be packed: " + status.getDescription() +
                                           "; " + adviceOn(network, text, weights),
                                       status.getCode());
    }
    files.inputs = std::move(trial.inputs);
    files.outputs = std::move(trial.outputs);
    const TextPorts ports = readTextPorts(text);
    sortAsInText(ports.inputs, files.inputs);
    sortAsInText(ports.outputs, files.outputs);
    if (files.inputs.empty() || files.outputs.empty()) {
        throw InvalidArgumentsException(network +
                                        " has no inputs or no outputs, but a package needs both");
    }
    std::for_each(files.inputs.begin(), files.inputs.end(), checkInput);
}

}  // namespace

NetworkFiles readFilesToPack(const std::string& network, const std::string& namedWeights) {
    requireConverted(network);
    const std::string weights = findWeights(network, namedWeights);
    NetworkFiles files;
    // Read first, to report which of the two is missing.
    files.contents.push_back(readFile(network));
    files.contents.push_back(weights.empty() ? WipedBytes(0) : readFile(weights));
    describe(network, weights, files);

    const std::string networkName = fileName(network);
    const std::string weightsName = weights.empty() ? stemOf(network) + ".bin" : fileName(weights);
    if (networkName == weightsName || networkName == kManifestName ||
        weightsName == kManifestName) {
        throw InvalidArgumentsException(
            "The network, its weights and \"manifest.json\" need different names, not " +
            networkName + " and " + weightsName);
    }
    files.names = {networkName, weightsName};
    for (const std::string& name : files.names) {
        requirePortableName(name, "rename the file so that the package can be used everywhere");
    }
    return files;
}

void describePorts(const NamedValues& descriptions, NetworkFiles& network) {
    for (const auto& [name, text] : descriptions) {
        bool isKnown = false;
        for (Descriptors* const ports : {&network.inputs, &network.outputs}) {
            for (ModelFeatureDescriptor& port : *ports) {
                if (port.name() == name) {
                    port = ModelFeatureDescriptor(port.type(), port.required(), name, text,
                                                  port.tensorDescriptor(), {});
                    isKnown = true;
                }
            }
        }
        if (!isKnown) {
            throw InvalidArgumentsException(
                "The network has no input or output \"" + name + "\" to describe; it has " +
                quotedNames(network.inputs) + ", " + quotedNames(network.outputs));
        }
    }
}

std::vector<PackageFile> makePackage(const Identity& identity, const NetworkFiles& network,
                                     const Key* key) {
    std::vector<PackageFile> package;
    package.push_back({kManifestName, bytesOf(manifestText(identity, network.names, key != nullptr,
                                                           network.inputs, network.outputs))});
    for (std::size_t i = 0; i < network.names.size(); ++i) {
        const std::string_view content = network.contents[i].text();
        package.push_back(
            {network.names[i], key == nullptr ? bytesOf(content) : encrypt(content, *key)});
    }
    return package;
}

void writeAndTry(const std::vector<PackageFile>& package, const std::string& directory,
                 const Key* key) {
    for (const PackageFile& file : package) {
        writeNewFile(join(directory, file.name), file.content.text());
    }
    const Trial trial = tryToPredict(directory, key);
    requireNoCrash(trial, package[1].name);
    require(trial.status);
}

}  // namespace quavin_tool
