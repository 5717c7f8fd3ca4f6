#include "output_files.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <set>
#include <string_view>
#include <utility>

#include "files.h"
#include "npy.h"
#include "printing.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::DataType;
using VelmoraQuavin::ITensor;
using VelmoraQuavin::QuavinFeature;

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

std::string inSmallLetters(std::string_view text) {
    std::string small(text);
    for (char& character : small) {
        if (character >= 'A' && character <= 'Z') {
            character = static_cast<char>(character - 'A' + 'a');
        }
    }
    return small;
}

// What Windows takes for a device in every directory, whatever ending it has.
bool isDeviceName(std::string_view name) {
    const std::string stem = inSmallLetters(name.substr(0, name.find('.')));
    const std::string_view family = std::string_view(stem).substr(0, 3);
    const bool isNumbered = stem.size() == 4 && stem[3] >= '0' && stem[3] <= '9';
    return stem == "con" || stem == "prn" || stem == "aux" || stem == "nul" ||
           (isNumbered && (family == "com" || family == "lpt"));
}

// A name from a package must not lead anywhere else. The same on every system, so that whoever
// reads the files finds them everywhere.
std::string fileNameFor(const std::string& name) {
    constexpr std::string_view kPlain =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-.";
    std::string safe = name;
    for (char& character : safe) {
        if (kPlain.find(character) == std::string_view::npos) {
            character = '_';
        }
    }
    if (safe.empty() || safe.front() == '.' || isDeviceName(safe)) {
        safe.insert(safe.begin(), '_');
    }
    return safe;
}

std::string numberText(double value) {
    std::array<char, 32> text{};
    static_cast<void>(std::snprintf(text.data(), text.size(), "%.6g", value));
    return text.data();
}

}  // namespace

std::vector<Output> writeOutputs(const Features& features, const std::string& directory, bool raw) {
    NewDirectories(directory).keep();
    std::vector<Output> outputs;
    std::set<std::string> taken;
    for (const std::shared_ptr<QuavinFeature>& feature : features) {
        const ITensor& tensor = *feature->asTensor();
        Output output{feature->featureDescriptor().name().str(), "", &tensor, summarize(tensor)};
        std::string stem = fileNameFor(output.name);
        // There are file systems that do not tell capital letters from small ones.
        while (!taken.insert(inSmallLetters(stem)).second) {
            stem += '_';
        }
        output.file = join(directory, stem + (raw ? ".raw" : ".npy"));
        const std::string_view elements(reinterpret_cast<const char*>(tensor.buffer()),
                                        static_cast<std::size_t>(tensor.bytes()));
        if (raw) {
            writeFile(output.file, elements);
        } else {
            writeFile(output.file, npyText(tensor.dataType(), tensor.shape(), elements));
        }
        outputs.push_back(std::move(output));
    }
    return outputs;
}

void printOutputs(const std::vector<Output>& outputs) {
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

void printOutputsAsJson(const std::vector<Output>& outputs) {
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

}  // namespace quavin_tool
