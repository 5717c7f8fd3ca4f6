#include "tools/quavin/io/output_files.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <set>
#include <string_view>
#include <utility>

#include "text/portable_name.h"
#include "tools/quavin/cli/printing.h"
#include "tools/quavin/io/file.h"
#include "tools/quavin/io/new_path.h"
#include "tools/quavin/io/npy.h"
#include "tools/quavin/io/path_text.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::DataType;
using VelmoraQuavin::ITensor;
using VelmoraQuavin::QuavinFeature;
using VelmoraQuavin::internal::isPortableName;

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

// The first elements, for display.
template <typename Element>
std::vector<double> firstValues(const ITensor& tensor) {
    constexpr std::int64_t kShown = 10;
    std::vector<double> values;
    for (std::int64_t i = 0; i < std::min(tensor.shape().size(), kShown); ++i) {
        Element element{};
        std::memcpy(&element, tensor.buffer() + static_cast<std::size_t>(i) * sizeof element,
                    sizeof element);
        values.push_back(static_cast<double>(element));
    }
    return values;
}

std::vector<double> firstValues(const ITensor& tensor) {
    return tensor.dataType() == DataType::FLOAT ? firstValues<float>(tensor)
                                                : firstValues<std::int32_t>(tensor);
}

// Outputs are floats or 32-bit integers.
Summary summarize(const ITensor& tensor) {
    return tensor.dataType() == DataType::FLOAT ? summarize<float>(tensor)
                                                : summarize<std::int32_t>(tensor);
}

// A name from a package must not lead outside the directory. The result is the same on every
// system, so that readers find the files everywhere.
std::string fileNameFor(const std::string& name) {
    constexpr std::string_view kPlain =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-.";
    std::string safe = name;
    for (char& character : safe) {
        if (kPlain.find(character) == std::string_view::npos) {
            character = '_';
        }
    }
    if (safe.empty() || safe.front() == '.' || !isPortableName(safe + ".npy")) {
        safe.insert(safe.begin(), '_');
    }
    return safe;
}

std::string numberText(double value) {
    if (std::isnan(value)) {
        return "nan";  // some C libraries write it with a sign
    }
    std::array<char, 32> text{};
    static_cast<void>(std::snprintf(text.data(), text.size(), "%.6g", value));
    return text.data();
}

std::string headText(const ITensor& tensor) {
    const bool isWhole = tensor.dataType() == DataType::INT32;
    const std::vector<double> values = firstValues(tensor);
    std::string text;
    for (const double value : values) {
        text += (text.empty() ? "" : ", ") +
                (isWhole ? std::to_string(std::llround(value)) : numberText(value));
    }
    return static_cast<std::size_t>(tensor.shape().size()) > values.size() ? text + ", ..." : text;
}

}  // namespace

std::vector<Output> summarizeOutputs(const Features& features) {
    std::vector<Output> outputs;
    for (const std::shared_ptr<QuavinFeature>& feature : features) {
        const ITensor& tensor = *feature->asTensor();
        outputs.push_back(
            {feature->featureDescriptor().name().str(), "", &tensor, summarize(tensor)});
    }
    return outputs;
}

void writeOutputs(std::vector<Output>& outputs, const std::string& directory, bool raw) {
    NewDirectories(directory).keep();
    std::set<std::string> taken;
    for (Output& output : outputs) {
        const ITensor& tensor = *output.tensor;
        std::string stem = fileNameFor(output.name);
        // Some file systems are case-insensitive.
        while (!taken.insert(toAsciiLower(stem)).second) {
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
    }
}

void printOutputs(const std::vector<Output>& outputs) {
    const bool written = !outputs.empty() && !outputs.front().file.empty();
    std::vector<std::vector<std::string>> rows{
        {"OUTPUT", "TYPE", "SHAPE", "MIN", "MAX", "MEAN", "MAX AT", written ? "FILE" : "VALUES"}};
    for (const Output& output : outputs) {
        const Summary& summary = output.summary;
        rows.push_back({printable(output.name), typeName(output.tensor->dataType()),
                        shapeText(output.tensor->shape()), numberText(summary.minimum),
                        numberText(summary.maximum), numberText(summary.mean),
                        std::to_string(summary.indexOfMaximum),
                        written ? output.file : headText(*output.tensor)});
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
        if (output.file.empty()) {
            json.numbers("firstValues", firstValues(*output.tensor));
        } else {
            json.member("file", output.file);
        }
        json.endObject();
    }
    json.endArray();
    json.endObject();
    std::cout << json.text() << '\n';
}

}  // namespace quavin_tool
