#include "support/ir_text.h"

#include <cctype>
#include <map>
#include <sstream>
#include <utility>

namespace VelmoraQuavin::testing {
namespace {

std::string quoted(const std::string& text) {
    return "\"" + text + "\"";
}

std::string quoted(std::size_t number) {
    return quoted(std::to_string(number));
}

// Ports name their types differently from layers.
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

std::string portText(std::size_t id, const IrText::Port& port) {
    std::string text = "<port id=" + quoted(id);
    if (!port.type.empty()) {
        text += " precision=" + quoted(portPrecision(port.type));
    }
    if (!port.tensorNames.empty()) {
        text += " names=" + quoted(port.tensorNames);
    }
    text += '>';
    std::istringstream list(port.dims);
    for (std::string dim; std::getline(list, dim, ',');) {
        text += "<dim>" + (dim == "?" ? "-1" : dim) + "</dim>";
    }
    return text + "</port>";
}

// The ports inside this tag, numbered from `firstId`; nothing if there are none.
std::string portsText(const std::string& tag, std::size_t firstId,
                      const std::vector<IrText::Port>& ports) {
    if (ports.empty()) {
        return "";
    }
    std::string text = "<" + tag + ">";
    for (const IrText::Port& port : ports) {
        text += portText(firstId++, port);
    }
    return text + "</" + tag + ">\n";
}

std::string elements(const std::string& type, const std::string& dims) {
    return "element_type=" + quoted(type) + " shape=" + quoted(dims);
}

}  // namespace

IrText::IrText(int version, std::string name) : version_(version), name_(std::move(name)) {}

IrText& IrText::parameter(std::size_t id, const std::string& name, const std::string& type,
                          const std::string& dims, const std::string& tensorNames) {
    return layer({id, name, "Parameter", elements(type, dims), {}, {{dims, type, tensorNames}}});
}

IrText& IrText::constant(std::size_t id, const std::string& name, const std::string& type,
                         const std::string& dims, std::size_t offset, std::size_t size) {
    const std::string data =
        elements(type, dims) + " offset=" + quoted(offset) + " size=" + quoted(size);
    return layer({id, name, "Const", data, {}, {{dims, type, ""}}});
}

IrText& IrText::layer(const Layer& layer) {
    layers_ += "<layer id=" + quoted(layer.id) + " name=" + quoted(layer.name) +
               " type=" + quoted(layer.kind) + " version=\"opset1\">\n";
    if (!layer.data.empty()) {
        layers_ += "<data " + layer.data + "/>\n";
    }
    layers_ += portsText("input", 0, layer.inputs) +
               portsText("output", layer.inputs.size(), layer.outputs) + "</layer>\n";
    return *this;
}

IrText& IrText::layer(std::size_t id, const std::string& name, const std::string& kind,
                      const std::string& data, const std::string& type,
                      const std::vector<std::string>& inputDims,
                      const std::vector<Output>& outputs) {
    Layer written{id, name, kind, data, {}, {}};
    for (const std::string& dims : inputDims) {
        written.inputs.push_back({dims, "", ""});
    }
    for (const Output& output : outputs) {
        written.outputs.push_back({output.dims, type, output.tensorNames});
    }
    return layer(written);
}

IrText& IrText::result(std::size_t id, const std::string& dims) {
    return layer({id, "result_" + std::to_string(id), "Result", "", {{dims, "", ""}}, {}});
}

IrText& IrText::edge(std::size_t fromLayer, std::size_t fromPort, std::size_t toLayer,
                     std::size_t toPort) {
    edges_ += "<edge from-layer=" + quoted(fromLayer) + " from-port=" + quoted(fromPort) +
              " to-layer=" + quoted(toLayer) + " to-port=" + quoted(toPort) + "/>\n";
    return *this;
}

std::string IrText::str() const {
    return "<?xml version=\"1.0\"?>\n<net name=" + quoted(name_) +
           " version=" + quoted(std::to_string(version_)) + ">\n<layers>\n" + layers_ +
           "</layers>\n<edges>\n" + edges_ + "</edges>\n</net>\n";
}

}  // namespace VelmoraQuavin::testing
