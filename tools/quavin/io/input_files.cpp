#include "tools/quavin/io/input_files.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>

#include "tools/quavin/cli/printing.h"
#include "tools/quavin/io/casting.h"
#include "tools/quavin/io/file.h"
#include "tools/quavin/io/wiped_bytes.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::DataType;
using VelmoraQuavin::InvalidArgumentsException;
using VelmoraQuavin::ITensor;
using VelmoraQuavin::ModelFeatureDescriptor;
using VelmoraQuavin::QuavinFeature;
using VelmoraQuavin::QuavinFeatureTensor;
using VelmoraQuavin::QuavinFeatureType;
using VelmoraQuavin::TensorDescriptor;

void fillRaw(const std::string& path, QuavinFeature& feature) {
    const std::shared_ptr<ITensor> tensor = feature.asTensor();
    const WipedBytes content = readFile(path);
    if (tensor->buffer() == nullptr ||
        static_cast<std::uint64_t>(tensor->bytes()) != content.size()) {
        throw InvalidArgumentsException(
            path + " has " + std::to_string(content.size()) + " bytes, but the input takes " +
            typeName(tensor->dataType()) + " of shape " +
            shapeText(feature.featureDescriptor().tensorDescriptor()) + ": " +
            std::to_string(std::max<std::int64_t>(tensor->bytes(), 0)) + " bytes");
    }
    std::memcpy(tensor->buffer(), content.data(), content.size());
}

// A feature with a tensor of the array's shape. The allocated one does not work if the manifest
// leaves the shape open.
std::shared_ptr<QuavinFeature> featureOf(const std::string& path,
                                         const ModelFeatureDescriptor& declared, Casts casts) {
    const NpyArray array = parseNpy(readFile(path), path, casts);
    const TensorDescriptor& wanted = declared.tensorDescriptor();
    const DataType type = wanted.tensorType();
    const bool shapeFits = wanted.variableShape() || wanted.shape().compare(array.shape);
    const bool typeFits = array.type == type || (casts == Casts::kDone && isInputType(type));
    if (!typeFits || !shapeFits) {
        const bool castHelps = shapeFits && isInputType(type) && casts == Casts::kRefused;
        throw InvalidArgumentsException(path + " is " + typeName(array.type) + " of shape " +
                                        shapeText(array.shape) + ", but the input takes " +
                                        typeName(type) + " of shape " + shapeText(wanted) +
                                        (castHelps ? "; --cast converts it" : ""));
    }
    const TensorDescriptor known(declared.name(), array.shape, false, type);
    auto feature = std::make_shared<QuavinFeatureTensor>(
        ModelFeatureDescriptor(QuavinFeatureType::TENSOR, true, declared.name(), "", known, {}));
    const std::shared_ptr<ITensor> tensor = feature->asTensor();
    if (array.type == type && !array.isBigEndian) {
        std::memcpy(tensor->buffer(), array.elements(), static_cast<std::size_t>(tensor->bytes()));
    } else {
        castElements(array, path, type, tensor->buffer());
    }
    return feature;
}

// Checked before missing inputs: a misspelt name is both unknown and missing.
void requireKnownNames(const InputFiles& files, const Features& inputs) {
    Descriptors tensors;
    for (const std::shared_ptr<QuavinFeature>& input : inputs) {
        if (input->type() == QuavinFeatureType::TENSOR) {
            tensors.push_back(input->featureDescriptor());
        }
    }
    for (const auto& [name, file] : files) {
        const bool isKnown = std::any_of(
            tensors.begin(), tensors.end(),
            [&wanted = name](const ModelFeatureDescriptor& each) { return each.name() == wanted; });
        if (!isKnown) {
            throw InvalidArgumentsException(
                "The package has no tensor input \"" + name +
                (tensors.empty() ? "\", nor any other" : "\", but " + quotedNames(tensors)));
        }
    }
}

}  // namespace

CLI::Option* addInputOption(CLI::App& command, std::vector<std::string>& arguments) {
    return addNamedValuesOption(command, "-i,--input", arguments, "NAME=FILE",
                                "The file for an input; repeat for each of the package's inputs");
}

CLI::Option* addCastOption(CLI::App& command, Casts& casts) {
    return command.add_flag_callback(
        "--cast", [&casts] { casts = Casts::kDone; },
        "Convert .npy files of other types to the types of the inputs");
}

InputFiles parseInputs(const std::vector<std::string>& arguments) {
    return parseNamedValues("--input", "NAME=FILE", arguments);
}

Features readInputs(VelmoraQuavin::QuavinModel& model, const InputFiles& files, bool raw,
                    MissingInputs missing, Casts casts) {
    Features inputs = zeroInputs(model);
    requireKnownNames(files, inputs);
    for (std::shared_ptr<QuavinFeature>& input : inputs) {
        const std::string name = input->featureDescriptor().name().str();
        const auto file = files.find(name);
        if (input->type() != QuavinFeatureType::TENSOR) {
            continue;  // for hosts: the engine takes only tensors
        }
        if (file == files.end() && missing == MissingInputs::kZeros) {
            continue;
        }
        if (file == files.end()) {
            std::string problem = "The input \"" + name;
            problem.append("\" has no file: pass --input ").append(name).append("=FILE");
            throw InvalidArgumentsException(problem);
        }
        if (raw) {
            fillRaw(file->second, *input);
        } else {
            input = featureOf(file->second, input->featureDescriptor(), casts);
        }
    }
    return inputs;
}

}  // namespace quavin_tool
