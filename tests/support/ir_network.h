#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/ir_text.h"

namespace VelmoraQuavin::testing {

/// Builds a small network from its inputs to its outputs, and returns it as the text and weights of
/// a version 10 IR.
///
/// Nothing is inferred: the caller states every shape. An input is known by the name of its layer,
/// an output by the name of the layer that produces it.
///
/// @code
/// IrNetwork net("twice");
/// const auto x = net.input("x", {1, 2});
/// net.output(net.layer("Multiply", "y", {x, net.constant<float>("two", {1, 1}, {2})}, {1, 2}));
/// @endcode
class IrNetwork {
public:
    using Shape = std::vector<std::int64_t>;

    /// The single output of a layer, as later layers take it.
    struct Port {
        std::size_t layer;
        std::size_t port;
        std::string name;
        Shape shape;
        std::string type;  ///< "f32", "i32", ...
    };

    explicit IrNetwork(std::string name) : text_(10, std::move(name)) {}

    /// An input of the network.
    Port input(const std::string& name, const Shape& shape, const std::string& type = "f32");
    /// Values in the weights.
    template <typename Value>
    Port constant(const std::string& name, const Shape& shape, const std::vector<Value>& values) {
        return addConstant(
            name, shape, typeOf(Value{}),
            {reinterpret_cast<const char*>(values.data()), values.size() * sizeof(Value)});
    }
    /// An operation with one output, which has the element type of its first input.
    Port layer(const std::string& kind, const std::string& name, const std::vector<Port>& inputs,
               const Shape& shape, const std::string& attributes = "");
    /// The same values converted to another element type.
    Port convert(const std::string& name, const Port& source, const std::string& type);
    /// Makes a port an output of the network.
    void output(const Port& port);

    const std::vector<Port>& inputs() const { return inputs_; }
    const std::vector<Port>& outputs() const { return outputs_; }
    std::string topology() const { return text_.str(); }
    const std::string& weights() const { return weights_; }

private:
    static std::string typeOf(float /*value*/) { return "f32"; }
    static std::string typeOf(std::int32_t /*value*/) { return "i32"; }

    Port addConstant(const std::string& name, const Shape& shape, const std::string& type,
                     std::string_view bytes);
    /// Returns the layer's number.
    std::size_t add(const std::string& kind, const std::string& name, const std::string& attributes,
                    const std::vector<Port>& inputs, const std::vector<IrText::Port>& outputs);

    IrText text_;
    std::string weights_;
    std::size_t layerCount_ = 0;
    std::vector<Port> inputs_;
    std::vector<Port> outputs_;
};

}  // namespace VelmoraQuavin::testing
