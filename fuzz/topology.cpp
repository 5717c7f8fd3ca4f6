// The names of a network's ports, from its text.
#include "topology.hpp"

#include <string>

#include "fuzz/promise.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = quavin_fuzz::textOf(data, size);
    const InferenceEngine::runtime::Topology topology =
        InferenceEngine::runtime::readTopology(text);
    for (const auto* ports : {&topology.inputs, &topology.outputs}) {
        for (const auto& [known, name] : *ports) {
            // An output's name may end in its number.
            quavin_fuzz::require(
                known.size() <= size && name.size() <= size + std::to_string(size).size() + 1,
                "names come from the text");
        }
    }
    return 0;
}
