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

std::string quoted(const std::string& path) {
    return path.find(' ') == std::string::npos ? path : '"' + path + '"';
}

// The command that makes a package of a model in another format.
std::string converting(const std::string& model) {
    return "quavin-convert " + quoted(model) + " -o PACKAGE";
}

// How to make a package of a model; empty if it is taken for IR.
std::string conversionOf(const std::string& network) {
    const std::string ending = toAsciiLower(fs::u8path(fileName(network)).extension().u8string());
    const std::string stem = stemOf(network);
    if (holds(kConverted, ending) || isThere(join(network, "saved_model.pb"))) {
        return "make its package with: " + converting(network);
    }
    if (holds(kOfTorch, ending)) {
        return "pass the module to quavin.pack in Python, or export it with torch.onnx.export, and "
               "make the package with: " +
               converting(stem + ".onnx");
    }
    if (holds(kOfScikitLearn, ending)) {
        return "export it to ONNX with skl2onnx, and make the package with: " +
               converting(stem + ".onnx");
    }
    if (holds(kOfKeras, ending)) {
        return "export it with model.export(\"" + stem +
               "\"), and make the package with: " + converting(stem);
    }
    return "";
}

}  // namespace

void requireConverted(const std::string& network) {
    const std::string conversion = isThere(network) ? conversionOf(network) : "";
    if (!conversion.empty()) {
        throw VelmoraQuavin::InvalidArgumentsException(
            network + " is not OpenVINO IR: " + conversion +
            " (quavin-convert comes with the Python package quavin_on_device_sdk, and names the "
            "shapes to fix, if any)");
    }
}

std::string fixedDimensionsAdvice(const std::string& network, std::string_view networkText) {
    std::string shapes;
    for (const TextPort& input : readTextPorts(networkText).inputs) {
        if (input.names.empty() || input.isFixed()) {
            continue;
        }
        std::string shape;
        for (const std::string& extent : input.shape) {
            const bool fixed = extent.find_first_not_of("0123456789") == std::string::npos;
            shape += (shape.empty() ? "" : ",") + (fixed ? extent : "1");
        }
        shapes += " --shape " + quoted(input.names.front() + "=" + shape);
    }
    return shapes.empty() ? ""
                          : "make the package with fixed dimensions, for example with: "
                            "quavin-convert " +
                                quoted(network) + " -o PACKAGE" + shapes;
}

}  // namespace quavin_tool
