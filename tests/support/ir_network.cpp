#include "support/ir_network.h"

#include <stdexcept>

namespace VelmoraQuavin::testing {
namespace {

std::string joined(const IrNetwork::Shape& shape) {
    std::string text;
    for (const std::int64_t extent : shape) {
        text += (text.empty() ? "" : ",") + std::to_string(extent);
    }
    return text;
}

std::string portPrecision(const std::string& type) {
    if (type == "f32") return "FP32";
    if (type == "f16") return "FP16";
    if (type == "f64") return "FP64";
    if (type == "i8") return "I8";
    if (type == "i16") return "I16";
    if (type == "i32") return "I32";
    if (type == "i64") return "I64";
    if (type == "u8") return "U8";
    if (type == "u16") return "U16";
    if (type == "u32") return "U32";
    if (type == "boolean") return "BOOL";
    throw std::invalid_argument("no port precision for " + type);
}

std::string port(std::size_t id, const IrNetwork::Shape& shape, const std::string& type) {
    std::string dims;
    for (const std::int64_t extent : shape) {
        dims += "<dim>" + std::to_string(extent) + "</dim>";
    }
    return "        <port id=\"" + std::to_string(id) + "\" precision=\"" + portPrecision(type) +
           "\">" + dims + "</port>\n";
}

}  // namespace

IrNetwork::Port IrNetwork::input(const std::string& name, const Shape& shape,
                                 const std::string& type) {
    inputs_.push_back(add("Parameter", name, {}, shape, type,
                          R"(element_type=")" + type + R"(" shape=")" + joined(shape) + '"'));
    return inputs_.back();
}

IrNetwork::Port IrNetwork::addConstant(const std::string& name, const Shape& shape,
                                       const std::string& type, std::string_view bytes) {
    const std::string attributes = R"(element_type=")" + type + R"(" shape=")" + joined(shape) +
                                   R"(" offset=")" + std::to_string(weights_.size()) +
                                   R"(" size=")" + std::to_string(bytes.size()) + '"';
    weights_ += bytes;
    return add("Const", name, {}, shape, type, attributes);
}

IrNetwork::Port IrNetwork::layer(const std::string& kind, const std::string& name,
                                 const std::vector<Port>& inputs, const Shape& shape,
                                 const std::string& attributes) {
    return add(kind, name, inputs, shape, inputs.at(0).type, attributes);
}

IrNetwork::Port IrNetwork::convert(const std::string& name, const Port& source,
                                   const std::string& type) {
    return add("Convert", name, {source}, source.shape, type, "destination_type=\"" + type + '"');
}

void IrNetwork::output(const Port& port) {
    add("Result", port.name + "/result", {port}, {}, "", "");
    outputs_.push_back(port);
}

std::string IrNetwork::topology() const {
    return "<?xml version=\"1.0\"?>\n<net name=\"" + name_ + "\" version=\"10\">\n  <layers>\n" +
           layers_ + "  </layers>\n  <edges>\n" + edges_ + "  </edges>\n</net>\n";
}

// A layer without an element type has no output.
IrNetwork::Port IrNetwork::add(const std::string& kind, const std::string& name,
                               const std::vector<Port>& inputs, const Shape& shape,
                               const std::string& type, const std::string& attributes) {
    const std::size_t id = layerCount_++;
    layers_ += "    <layer id=\"" + std::to_string(id) + "\" name=\"" + name + "\" type=\"" + kind +
               "\" version=\"opset1\">\n";
    if (!attributes.empty()) {
        layers_ += "      <data " + attributes + "/>\n";
    }
    if (!inputs.empty()) {
        layers_ += "      <input>\n";
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            layers_ += port(i, inputs[i].shape, inputs[i].type);
            edges_ += "    <edge from-layer=\"" + std::to_string(inputs[i].layer) +
                      "\" from-port=\"" + std::to_string(inputs[i].port) + "\" to-layer=\"" +
                      std::to_string(id) + "\" to-port=\"" + std::to_string(i) + "\"/>\n";
        }
        layers_ += "      </input>\n";
    }
    if (!type.empty()) {
        layers_ += "      <output>\n" + port(inputs.size(), shape, type) + "      </output>\n";
    }
    layers_ += "    </layer>\n";
    return {id, inputs.size(), name, shape, type};
}

}  // namespace VelmoraQuavin::testing
