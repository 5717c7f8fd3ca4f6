#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "command_line.h"
#include "files.h"
#include "key.h"
#include "npy.h"
#include "output_files.h"
#include "package.h"
#include "printing.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::InvalidArgumentsException;
using VelmoraQuavin::ITensor;
using VelmoraQuavin::ModelFeatureDescriptor;
using VelmoraQuavin::QuavinFeature;
using VelmoraQuavin::QuavinFeatureTensor;
using VelmoraQuavin::QuavinFeatureType;
using VelmoraQuavin::TensorDescriptor;

struct Options {
    std::string package;
    std::vector<std::string> inputs;
    std::string directory;
    bool raw = false;
    KeyOptions key;
    OutputOptions output;
};

/// Files by the names of the inputs that they are for.
using InputFiles = std::map<std::string, std::string>;

InputFiles parseInputs(const std::vector<std::string>& arguments) {
    InputFiles files;
    for (const std::string& argument : arguments) {
        const std::size_t equals = argument.find('=');
        if (equals == std::string::npos || equals == 0 || equals + 1 == argument.size()) {
            throw CLI::ValidationError("--input", "takes NAME=FILE, not " + argument);
        }
        if (!files.emplace(argument.substr(0, equals), argument.substr(equals + 1)).second) {
            throw CLI::ValidationError("--input",
                                       argument.substr(0, equals) + " is given more than once");
        }
    }
    return files;
}

void fillRaw(const std::string& path, QuavinFeature& feature) {
    const std::shared_ptr<ITensor> tensor = feature.asTensor();
    const Bytes content = readFile(path);
    if (tensor->buffer() == nullptr ||
        static_cast<std::uint64_t>(tensor->bytes()) != content.size()) {
        throw InvalidArgumentsException(
            path + " has " + std::to_string(content.size()) + " bytes, and the input takes " +
            typeName(tensor->dataType()) + " of shape " +
            shapeText(feature.featureDescriptor().tensorDescriptor()) + ": " +
            std::to_string(std::max<std::int64_t>(tensor->bytes(), 0)) + " bytes");
    }
    std::memcpy(tensor->buffer(), content.data(), content.size());
}

// A feature over a tensor of the array's shape. The allocated one will not do where the manifest
// leaves the shape open.
std::shared_ptr<QuavinFeature> featureOf(const std::string& path,
                                         const ModelFeatureDescriptor& declared) {
    const NpyArray array = readNpy(path);
    const TensorDescriptor& wanted = declared.tensorDescriptor();
    if (array.type != wanted.tensorType() ||
        (!wanted.variableShape() && !wanted.shape().compare(array.shape))) {
        throw InvalidArgumentsException(path + " is " + typeName(array.type) + " of shape " +
                                        shapeText(array.shape) + ", and the input takes " +
                                        typeName(wanted.tensorType()) + " of shape " +
                                        shapeText(wanted));
    }
    const TensorDescriptor known(declared.name(), array.shape, false, array.type);
    auto feature = std::make_shared<QuavinFeatureTensor>(
        ModelFeatureDescriptor(QuavinFeatureType::TENSOR, true, declared.name(), "", known, {}));
    const std::shared_ptr<ITensor> tensor = feature->asTensor();
    std::memcpy(tensor->buffer(), array.elements(), static_cast<std::size_t>(tensor->bytes()));
    return feature;
}

// Told before what is missing: a name that is misspelt is both.
void requireKnownNames(const InputFiles& files, const Features& inputs) {
    std::set<std::string> known;
    std::string list;
    for (const std::shared_ptr<QuavinFeature>& input : inputs) {
        if (input->type() == QuavinFeatureType::TENSOR) {
            const std::string name = input->featureDescriptor().name().str();
            known.insert(name);
            list += (list.empty() ? "\"" : ", \"") + name + "\"";
        }
    }
    for (const auto& [name, file] : files) {
        if (known.count(name) == 0) {
            std::string problem = "The package has no input \"" + name;
            problem.append("\" that takes a file, but ").append(list);
            throw InvalidArgumentsException(problem);
        }
    }
}

Features readInputs(VelmoraQuavin::QuavinModel& model, const InputFiles& files, bool raw) {
    Features inputs = zeroInputs(model);
    requireKnownNames(files, inputs);
    for (std::shared_ptr<QuavinFeature>& input : inputs) {
        const std::string name = input->featureDescriptor().name().str();
        const auto file = files.find(name);
        if (input->type() != QuavinFeatureType::TENSOR) {
            continue;  // for hosts: the engine takes tensors alone
        }
        if (file == files.end()) {
            std::string problem = "The input \"" + name;
            problem.append("\" has no file: give --input ").append(name).append("=FILE");
            throw InvalidArgumentsException(problem);
        }
        if (raw) {
            fillRaw(file->second, *input);
        } else {
            input = featureOf(file->second, input->featureDescriptor());
        }
    }
    return inputs;
}

void run(const Options& options) {
    // Before anything is read: a wrong call is no failed one.
    const InputFiles files = parseInputs(options.inputs);
    const std::shared_ptr<VelmoraQuavin::QuavinModel> model =
        loadModel(openPackage(options.package, options.key));
    const Features features = predict(*model, readInputs(*model, files, options.raw));
    const std::vector<Output> outputs = writeOutputs(features, options.directory, options.raw);
    options.output.json ? printOutputsAsJson(outputs) : printOutputs(outputs);
}

}  // namespace

void addRunCommand(CLI::App& app) {
    auto options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("run", "Predicts once, from .npy files to .npy files.");
    command->add_option("PACKAGE", options->package, "The package's directory")
        ->type_name("DIR")
        ->check(isPath())
        ->required();
    command
        ->add_option("-i,--input", options->inputs,
                     "The file for an input; once for each of the package's inputs")
        ->type_name("NAME=FILE")
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->required();
    command
        ->add_option("-o,--output", options->directory,
                     "Where to write the outputs; made where it is missing")
        ->type_name("DIR")
        ->check(isPath())
        ->required();
    command->add_flag("--raw", options->raw,
                      "Files hold elements alone: little-endian, the last dimension fastest");
    addKeyOptions(*command, options->key);
    addOutputOptions(*command, options->output);
    command->callback([options] { run(*options); });
}

}  // namespace quavin_tool
