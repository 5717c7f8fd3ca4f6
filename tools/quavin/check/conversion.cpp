#include "tools/quavin/check/conversion.h"

#include <algorithm>
#include <array>
#include <filesystem>

#include "tools/quavin/check/network_text.h"
#include "tools/quavin/io/new_path.h"
#include "tools/quavin/io/path_text.h"

namespace quavin_tool {
namespace {

namespace fs = std::filesystem;

// Formats that the converter takes directly, and formats that must first be exported.
constexpr std::array<std::string_view, 5> kConverted{".onnx", ".pb", ".tflite", ".pdmodel", ".pt2"};
constexpr std::array<std::string_view, 4> kOfTorch{".pt", ".pth", ".ckpt", ".safetensors"};
constexpr std::array<std::string_view, 3> kOfScikitLearn{".pkl", ".pickle", ".joblib"};
constexpr std::array<std::string_view, 3> kOfKeras{".keras", ".h5", ".hdf5"};

template <std::size_t kSize>
bool holds(const std::array<std::string_view, kSize>& endings, const std::string& ending) {
    return std::find(endings.begin(), endings.end(), ending) != endings.end();
}

// The converter's command line. Without the option it would round the weights to 16 bits.
std::string converting(const std::string& model) {
    const bool hasBlanks = model.find(' ') != std::string::npos;
    return "ovc " + (hasBlanks ? '"' + model + '"' : model) + " --compress_to_fp16=False";
}

// How to convert a model to IR; empty if it is taken for IR.
std::string conversionOf(const std::string& network) {
    const std::string ending = toAsciiLower(fs::u8path(fileName(network)).extension().u8string());
    const std::string stem = stemOf(network);
    if (holds(kConverted, ending) || isThere(join(network, "saved_model.pb"))) {
        return "convert it with: " + converting(network);
    }
    if (holds(kOfTorch, ending)) {
        return "export it to ONNX with torch.onnx.export, and convert that with: " +
               converting(stem + ".onnx");
    }
    if (holds(kOfScikitLearn, ending)) {
        return "export it to ONNX with skl2onnx, and convert that with: " +
               converting(stem + ".onnx");
    }
    if (holds(kOfKeras, ending)) {
        return "export it with model.export(\"" + stem +
               "\"), and convert that with: " + converting(stem);
    }
    return "";
}

}  // namespace

void requireConverted(const std::string& network) {
    const std::string conversion = isThere(network) ? conversionOf(network) : "";
    if (!conversion.empty()) {
        throw VelmoraQuavin::InvalidArgumentsException(
            network + " is not OpenVINO IR yet: " + conversion +
            " (ovc comes with \"pip install openvino\"), then pack the resulting " +
            stemOf(network) + ".xml");
    }
}

std::string fixedDimensionsAdvice(std::string_view networkText) {
    std::string inputs;
    for (const TextPort& input : readTextPorts(networkText).inputs) {
        if (input.names.empty() || input.isFixed()) {
            continue;
        }
        std::string shape;
        for (const std::string& extent : input.shape) {
            const bool fixed = extent.find_first_not_of("0123456789") == std::string::npos;
            shape += (shape.empty() ? "" : ",") + (fixed ? extent : "1");
        }
        inputs += (inputs.empty() ? "" : ",") + input.names.front() + "[" + shape + "]";
    }
    return inputs.empty() ? ""
                          : "convert the original model again with fixed dimensions, for example "
                            "with: ovc MODEL --input \"" +
                                inputs + "\"";
}

}  // namespace quavin_tool
