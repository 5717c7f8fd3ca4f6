// What the runtime's C interface does not tell about a network, read from its text.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace InferenceEngine::runtime {

/** The names that matter to the inputs and outputs of a network. */
struct Topology {
    /**
     * In files up to version 10 the layers name the ports: the Parameters that reach an output, and
     * the layers before the Results, with "." and the port's number where a layer has several
     * outputs. By every name that the runtime may know the port by, which is one of its tensor's or
     * that of the layer itself. Empty for later versions, whose ports have names of their own.
     */
    std::unordered_map<std::string, std::string> inputs;
    std::unordered_map<std::string, std::string> outputs;

    /** The Parameters that reach no output, by all names that the runtime may know them by. */
    std::vector<std::string> unusedInputs;
};

/** Reads the text of a network that the runtime has read without complaint. */
Topology readTopology(std::string_view text);

}  // namespace InferenceEngine::runtime
