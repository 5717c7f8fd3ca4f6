// Facts about a network that the runtime's C interface does not report, read from its text.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace InferenceEngine::runtime {

/** The names needed for the inputs and outputs of a network. */
struct Topology {
    /**
     * In files up to version 10, ports are named after layers: inputs after the Parameters that
     * reach an output, and outputs after the layers that feed the Results, followed by "." and the
     * port's number if a layer has several outputs. The keys are all names that the runtime may
     * know the port by: those of its tensor, and that of the layer itself. Empty for later
     * versions, whose ports have their own names.
     */
    std::unordered_map<std::string, std::string> inputs;
    std::unordered_map<std::string, std::string> outputs;

    /** The Parameters that reach no output, under all names that the runtime may know them by. */
    std::vector<std::string> unusedInputs;
};

/** Reads the text of a network that the runtime has already accepted. */
Topology readTopology(std::string_view text);

}  // namespace InferenceEngine::runtime
