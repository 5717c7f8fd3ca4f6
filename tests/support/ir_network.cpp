#include "support/ir_network.h"

namespace VelmoraQuavin::testing {
namespace {

std::string joined(const IrNetwork::Shape& shape) {
    std::string text;
    for (const std::int64_t extent : shape) {
        text += (text.empty() ? "" : ",") + std::to_string(extent);
    }
    return text;
}

}  // namespace

IrNetwork::Port IrNetwork::input(const std::string& name, const Shape& shape,
                                 const std::string& type) {
    const std::size_t id = layerCount_++;
    text_.parameter(id, name, type, joined(shape));
    inputs_.push_back({id, 0, name, shape, type});
    return inputs_.back();
}

IrNetwork::Port IrNetwork::addConstant(const std::string& name, const Shape& shape,
                                       const std::string& type, std::string_view bytes) {
    const std::size_t id = layerCount_++;
    text_.constant(id, name, type, joined(shape), weights_.size(), bytes.size());
    weights_ += bytes;
    return {id, 0, name, shape, type};
}

IrNetwork::Port IrNetwork::layer(const std::string& kind, const std::string& name,
                                 const std::vector<Port>& inputs, const Shape& shape,
                                 const std::string& attributes) {
    const std::string& type = inputs.at(0).type;
    const std::size_t id = add(kind, name, attributes, inputs, {{joined(shape), type, ""}});
    return {id, inputs.size(), name, shape, type};
}

IrNetwork::Port IrNetwork::convert(const std::string& name, const Port& source,
                                   const std::string& type) {
    const std::size_t id = add("Convert", name, "destination_type=\"" + type + '"', {source},
                               {{joined(source.shape), type, ""}});
    return {id, 1, name, source.shape, type};
}

void IrNetwork::output(const Port& port) {
    add("Result", port.name + "/result", "", {port}, {});
    outputs_.push_back(port);
}

std::size_t IrNetwork::add(const std::string& kind, const std::string& name,
                           const std::string& attributes, const std::vector<Port>& inputs,
                           const std::vector<IrText::Port>& outputs) {
    const std::size_t id = layerCount_++;
    std::vector<IrText::Port> inputPorts;
    for (const Port& input : inputs) {
        text_.edge(input.layer, input.port, id, inputPorts.size());
        inputPorts.push_back({joined(input.shape), input.type, ""});
    }
    text_.layer({id, name, kind, attributes, inputPorts, outputs});
    return id;
}

}  // namespace VelmoraQuavin::testing
