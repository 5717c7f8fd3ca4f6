#include "ir_text.hpp"

#include <cctype>
#include <map>
#include <sstream>

namespace InferenceEngine {
namespace {

std::string quoted(const std::string& text) {
    return "\"" + text + "\"";
}

/** Ports name their types differently from layers. */
std::string portPrecision(const std::string& type) {
    static const std::map<std::string, std::string> kOther{
        {"f16", "FP16"}, {"f32", "FP32"}, {"f64", "FP64"}, {"boolean", "BOOL"}};
    if (const auto found = kOther.find(type); found != kOther.end()) {
        return found->second;
    }
    std::string upper;
    for (const char c : type) {
        upper += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    return upper;
}

std::string port(int id, const std::string& dims, const std::string& attributes = "") {
    std::string text = "<port id=" + quoted(std::to_string(id)) + attributes + ">";
    std::istringstream list(dims);
    for (std::string dim; std::getline(list, dim, ',');) {
        text += "<dim>" + (dim == "?" ? "-1" : dim) + "</dim>";
    }
    return text + "</port>";
}

std::string outputPort(int id, const std::string& type, const IrText::Output& output) {
    std::string attributes = " precision=" + quoted(portPrecision(type));
    if (!output.tensorNames.empty()) {
        attributes += " names=" + quoted(output.tensorNames);
    }
    return port(id, output.dims, attributes);
}

}  // namespace

IrText& IrText::parameter(int id, const std::string& name, const std::string& type,
                          const std::string& dims, const std::string& tensorNames) {
    return layer(id, name, "Parameter", "element_type=" + quoted(type) + " shape=" + quoted(dims),
                 type, {}, {{dims, tensorNames}});
}

IrText& IrText::constant(int id, const std::string& type, const std::string& dims, int offset,
                         int size) {
    return layer(id, "constant_" + std::to_string(id), "Const",
                 "element_type=" + quoted(type) + " shape=" + quoted(dims) + " offset=" +
                     quoted(std::to_string(offset)) + " size=" + quoted(std::to_string(size)),
                 type, {}, {{dims, ""}});
}

IrText& IrText::layer(int id, const std::string& name, const std::string& kind,
                      const std::string& data, const std::string& type,
                      const std::vector<std::string>& inputDims,
                      const std::vector<Output>& outputs) {
    layers_ += "<layer id=" + quoted(std::to_string(id)) + " name=" + quoted(name) +
               " type=" + quoted(kind) + " version=\"opset1\">\n<data " + data + "/>\n";
    int portId = 0;
    if (!inputDims.empty()) {
        layers_ += "<input>";
        for (const std::string& dims : inputDims) {
            layers_ += port(portId++, dims);
        }
        layers_ += "</input>\n";
    }
    if (!outputs.empty()) {
        layers_ += "<output>";
        for (const Output& output : outputs) {
            layers_ += outputPort(portId++, type, output);
        }
        layers_ += "</output>\n";
    }
    layers_ += "</layer>\n";
    return *this;
}

IrText& IrText::result(int id, const std::string& dims) {
    return layer(id, "result_" + std::to_string(id), "Result", "", "f32", {dims}, {});
}

IrText& IrText::edge(int fromLayer, int fromPort, int toLayer, int toPort) {
    edges_ += "<edge from-layer=" + quoted(std::to_string(fromLayer)) +
              " from-port=" + quoted(std::to_string(fromPort)) +
              " to-layer=" + quoted(std::to_string(toLayer)) +
              " to-port=" + quoted(std::to_string(toPort)) + "/>\n";
    return *this;
}

std::string IrText::str() const {
    return "<?xml version=\"1.0\"?>\n<net name=\"test\" version=" +
           quoted(std::to_string(version_)) + ">\n<layers>\n" + layers_ + "</layers>\n<edges>\n" +
           edges_ + "</edges>\n</net>\n";
}

std::string doublingNetwork(int version) {
    return IrText(version)
        .parameter(0, "x", "f32", "1,4", "x")
        .layer(1, "y", "Add", "", "f32", {"1,4", "1,4"}, {{"1,4", "y"}})
        .result(2, "1,4")
        .edge(0, 0, 1, 0)
        .edge(0, 0, 1, 1)
        .edge(1, 2, 2, 0)
        .str();
}

std::string repeatingNetwork(const std::string& type, int version) {
    return IrText(version)
        .parameter(0, "x", type, "4", "x")
        .layer(1, "y", "Concat", "axis=\"0\"", type, {"4", "4"}, {{"8", "y"}})
        .result(2, "8")
        .edge(0, 0, 1, 0)
        .edge(0, 0, 1, 1)
        .edge(1, 2, 2, 0)
        .str();
}

std::string addingNetwork() {
    return IrText(11)
        .parameter(0, "x", "f32", "1,4", "x")
        .constant(1, "f32", "1,4", 0, 16)
        .layer(2, "y", "Add", "", "f32", {"1,4", "1,4"}, {{"1,4", "y"}})
        .result(3, "1,4")
        .edge(0, 0, 2, 0)
        .edge(1, 0, 2, 1)
        .edge(2, 2, 3, 0)
        .str();
}

}  // namespace InferenceEngine
