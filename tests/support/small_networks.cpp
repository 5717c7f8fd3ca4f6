#include "support/small_networks.h"

namespace VelmoraQuavin::testing {

IrNetwork affineNetwork() {
    IrNetwork net("affine");
    const auto x = net.input("x", {1, 4});
    const auto factor = net.constant<float>("factor", {1, 1}, {2});
    const auto shift = net.constant<float>("shift", {1, 4}, {0.5F, 1, 1.5F, 2});
    const auto scaled = net.layer("Multiply", "scaled", {x, factor}, {1, 4});
    net.output(net.layer("Add", "y", {scaled, shift}, {1, 4}));
    return net;
}

IrNetwork sumNetwork() {
    IrNetwork net("sum");
    const auto x = net.input("x", {1, 2});
    net.output(net.layer("Add", "y", {x, x}, {1, 2}));
    return net;
}

IrNetwork arithmeticNetwork() {
    IrNetwork net("arithmetic");
    const auto left = net.input("left", {1, 2});
    const auto right = net.input("right", {1, 2});
    net.output(net.layer("Add", "sum", {left, right}, {1, 2}));
    net.output(net.layer("Subtract", "difference", {left, right}, {1, 2}));
    net.output(net.layer("Multiply", "product", {left, right}, {1, 2}));
    return net;
}

IrNetwork halvingNetwork(const std::string& type) {
    IrNetwork net("halving");
    auto x = net.input("x", {1, 4}, type);
    if (type != "f32") {
        x = net.convert("x/float", x, "f32");
    }
    net.output(
        net.layer("Multiply", "y", {x, net.constant<float>("half", {1, 1}, {0.5F})}, {1, 4}));
    return net;
}

IrNetwork integerNetwork() {
    IrNetwork net("integer");
    const auto x = net.input("x", {1, 4}, "i32");
    const auto three = net.constant<std::int32_t>("three", {1, 1}, {3});
    net.output(net.layer("Multiply", "y", {x, three}, {1, 4}));
    return net;
}

IrNetwork scalarNetwork() {
    IrNetwork net("scalar");
    const auto x = net.input("x", {});
    net.output(net.layer("Multiply", "y", {x, net.constant<float>("ten", {}, {10})}, {}));
    return net;
}

}  // namespace VelmoraQuavin::testing
