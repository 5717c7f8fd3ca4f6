#include "network_texts.hpp"

#include "support/ir_text.h"

namespace InferenceEngine {

using VelmoraQuavin::testing::IrText;

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
        .constant(1, "shift", "f32", "1,4", 0, 16)
        .layer(2, "y", "Add", "", "f32", {"1,4", "1,4"}, {{"1,4", "y"}})
        .result(3, "1,4")
        .edge(0, 0, 2, 0)
        .edge(1, 0, 2, 1)
        .edge(2, 2, 3, 0)
        .str();
}

}  // namespace InferenceEngine
