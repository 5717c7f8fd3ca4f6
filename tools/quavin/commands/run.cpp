#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "command_line.h"
#include "files.h"
#include "key.h"
#include "npy.h"
#include "package.h"
#include "printing.h"

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
        const std::size_t equals = argument.rfind('=');
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

Features readInputs(VelmoraQuavin::QuavinModel& model, const Options& options) {
    InputFiles files = parseInputs(options.inputs);
    Features inputs = zeroInputs(model);
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
        if (options.raw) {
            fillRaw(file->second, *input);
        } else {
            input = featureOf(file->second, input->featureDescriptor());
        }
        files.erase(file);
    }
    if (!files.empty()) {
        throw InvalidArgumentsException("The package has no input \"" + files.begin()->first +
                                        "\" that takes a file");
    }
    return inputs;
}

struct Summary {
    double minimum = 0;
    double maximum = 0;
    double mean = 0;
    std::uint64_t indexOfMaximum = 0;
    std::uint64_t notFinite = 0;
};

template <typename Element>
Summary summarize(const ITensor& tensor) {
    Summary summary;
    const auto count = static_cast<std::uint64_t>(tensor.shape().size());
    double sum = 0;
    std::uint64_t finite = 0;
    for (std::uint64_t i = 0; i < count; ++i) {
        Element element{};
        std::memcpy(&element, tensor.buffer() + i * sizeof element, sizeof element);
        const auto value = static_cast<double>(element);
        if (!std::isfinite(value)) {
            continue;
        }
        if (finite == 0 || value > summary.maximum) {
            summary.maximum = value;
            summary.indexOfMaximum = i;
        }
        summary.minimum = finite == 0 ? value : std::min(summary.minimum, value);
        sum += value;
        ++finite;
    }
    summary.notFinite = count - finite;
    summary.mean = finite == 0 ? 0 : sum / static_cast<double>(finite);
    return summary;
}

// Outputs are floats or 32-bit integers.
Summary summarize(const ITensor& tensor) {
    return tensor.dataType() == DataType::FLOAT ? summarize<float>(tensor)
                                                : summarize<std::int32_t>(tensor);
}

// A name from a package must not lead anywhere else.
std::string fileNameFor(const std::string& name) {
    constexpr std::string_view kPlain =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-.";
    std::string safe = name;
    for (char& character : safe) {
        if (kPlain.find(character) == std::string_view::npos) {
            character = '_';
        }
    }
    if (safe.empty() || safe.front() == '.') {
        safe.insert(safe.begin(), '_');
    }
    return safe;
}

struct Output {
    std::string name;
    std::string file;
    const ITensor* tensor;
    Summary summary;
};

std::vector<Output> writeOutputs(const Features& features, const Options& options) {
    makeDirectories(options.directory);
    std::vector<Output> outputs;
    std::set<std::string> taken;
    for (const std::shared_ptr<QuavinFeature>& feature : features) {
        const ITensor& tensor = *feature->asTensor();
        Output output{feature->featureDescriptor().name().str(), "", &tensor, summarize(tensor)};
        std::string stem = fileNameFor(output.name);
        while (!taken.insert(stem).second) {
            stem += '_';
        }
        output.file = join(options.directory, stem + (options.raw ? ".raw" : ".npy"));
        const std::string_view elements(reinterpret_cast<const char*>(tensor.buffer()),
                                        static_cast<std::size_t>(tensor.bytes()));
        if (options.raw) {
            writeFile(output.file, elements);
        } else {
            writeFile(output.file, npyText(tensor.dataType(), tensor.shape(), elements));
        }
        outputs.push_back(std::move(output));
    }
    return outputs;
}

std::string numberText(double value) {
    std::array<char, 32> text{};
    static_cast<void>(std::snprintf(text.data(), text.size(), "%.6g", value));
    return text.data();
}

void print(const std::vector<Output>& outputs) {
    std::vector<std::vector<std::string>> rows{
        {"OUTPUT", "TYPE", "SHAPE", "MIN", "MAX", "MEAN", "MAX AT", "FILE"}};
    for (const Output& output : outputs) {
        const Summary& summary = output.summary;
        rows.push_back({printable(output.name), typeName(output.tensor->dataType()),
                        shapeText(output.tensor->shape()), numberText(summary.minimum),
                        numberText(summary.maximum), numberText(summary.mean),
                        std::to_string(summary.indexOfMaximum), output.file});
        if (summary.notFinite != 0) {
            rows.back().push_back(std::to_string(summary.notFinite) +
                                  " elements are not finite and were left out");
        }
    }
    std::cout << table(rows);
}

void printJson(const std::vector<Output>& outputs) {
    JsonOutput json;
    json.beginObject();
    json.beginArray("outputs");
    for (const Output& output : outputs) {
        json.beginObject();
        json.member("name", output.name);
        json.member("dataType", typeName(output.tensor->dataType()));
        const VelmoraQuavin::TensorShape shape = output.tensor->shape();
        json.shape("shape", &shape);
        json.member("minimum", output.summary.minimum);
        json.member("maximum", output.summary.maximum);
        json.member("mean", output.summary.mean);
        json.member("indexOfMaximum", output.summary.indexOfMaximum);
        json.member("notFinite", output.summary.notFinite);
        json.member("file", output.file);
        json.endObject();
    }
    json.endArray();
    json.endObject();
    std::cout << json.text() << '\n';
}

void run(const Options& options) {
    parseInputs(options.inputs);  // before anything is read: a wrong call is no failed one
    const std::shared_ptr<VelmoraQuavin::QuavinModel> model =
        loadModel(openPackage(options.package, options.key));
    const Features features = predict(*model, readInputs(*model, options));
    const std::vector<Output> outputs = writeOutputs(features, options);
    options.output.json ? printJson(outputs) : print(outputs);
}

}  // namespace

void addRunCommand(CLI::App& app) {
    auto options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("run", "Predicts once, from .npy files to .npy files.");
    command->add_option("PACKAGE", options->package, "The package's directory")
        ->type_name("DIR")
        ->required();
    command
        ->add_option("-i,--input", options->inputs,
                     "The file for an input; once for each of the package's inputs")
        ->type_name("NAME=FILE")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->required();
    command
        ->add_option("-o,--output", options->directory,
                     "Where to write the outputs; made where it is missing")
        ->type_name("DIR")
        ->required();
    command->add_flag("--raw", options->raw,
                      "Files hold elements alone: little-endian, the last dimension fastest");
    addKeyOptions(*command, options->key);
    addOutputOptions(*command, options->output);
    command->callback([options] { run(*options); });
}

}  // namespace quavin_tool
