#include "topology.hpp"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <map>
#include <unordered_map>
#include <utility>

#include "text/xml_tags.h"

namespace InferenceEngine::runtime {
namespace {

using VelmoraQuavin::internal::splitList;
using VelmoraQuavin::internal::visitElements;
using VelmoraQuavin::internal::withoutReferences;
using VelmoraQuavin::internal::XmlPath;
using VelmoraQuavin::internal::XmlTag;

constexpr int kLastVersionNamedByLayers = 10;

struct Layer {
    std::string_view name;
    std::string_view type;
    // Its output ports: where they begin in Graph::portNames, and how many there are.
    std::size_t firstPort = 0;
    std::size_t portCount = 0;
    // The known layers that feed it, by index.
    std::vector<std::size_t> sources;
    bool reachesOutput = false;
};

struct Edge {
    std::string_view fromLayer, fromPort, toLayer;
};

struct Graph {
    int version = 0;
    std::vector<Layer> layers;
    std::vector<std::string_view> portNames;  // of their tensors, as written
    std::vector<Edge> edges;
    std::unordered_map<std::string_view, std::size_t> layerById;
    // By layer and id.
    std::map<std::pair<std::size_t, std::string_view>, std::size_t> portById;

    const std::size_t* find(std::string_view layerId) const {
        const auto found = layerById.find(layerId);
        return found == layerById.end() ? nullptr : &found->second;
    }
};

/** Reads the network's own layers and edges; those of bodies inside layers are nested deeper. */
Graph readGraph(std::string_view text) {
    Graph graph;
    visitElements(text, [&graph](const XmlTag& tag, const XmlPath& path) {
        const std::size_t depth = path.size();
        if (depth == 0 && tag.name == "net") {
            const std::string_view version = tag.attribute("version");
            std::from_chars(version.data(), version.data() + version.size(), graph.version);
        } else if (depth == 2 && tag.name == "layer" && path[1] == "layers") {
            graph.layerById.emplace(tag.attribute("id"), graph.layers.size());
            Layer& layer = graph.layers.emplace_back();
            layer.name = tag.attribute("name");
            layer.type = tag.attribute("type");
            layer.firstPort = graph.portNames.size();
        } else if (depth == 4 && tag.name == "port" && path[3] == "output" && path[2] == "layer" &&
                   path[1] == "layers") {
            graph.portById.emplace(std::pair(graph.layers.size() - 1, tag.attribute("id")),
                                   graph.portNames.size());
            graph.portNames.push_back(tag.attribute("names"));
            ++graph.layers.back().portCount;
        } else if (depth == 2 && tag.name == "edge" && path[1] == "edges") {
            graph.edges.push_back({tag.attribute("from-layer"), tag.attribute("from-port"),
                                   tag.attribute("to-layer")});
        }
    });
    return graph;
}

/** Marks the layers that lead to a Result or to a state that is written. */
void markReachingOutput(Graph& graph) {
    for (const Edge& edge : graph.edges) {
        const std::size_t* const from = graph.find(edge.fromLayer);
        const std::size_t* const to = graph.find(edge.toLayer);
        if (from != nullptr && to != nullptr) {
            graph.layers[*to].sources.push_back(*from);
        }
    }
    std::vector<std::size_t> open;
    const auto mark = [&](std::size_t index) {
        if (!graph.layers[index].reachesOutput) {
            graph.layers[index].reachesOutput = true;
            open.push_back(index);
        }
    };
    for (std::size_t i = 0; i < graph.layers.size(); ++i) {
        if (graph.layers[i].type == "Result" || graph.layers[i].type == "Assign") {
            mark(i);
        }
    }
    while (!open.empty()) {
        const std::size_t index = open.back();
        open.pop_back();
        for (const std::size_t source : graph.layers[index].sources) {
            mark(source);
        }
    }
}

/** The names of the tensors of a layer's output ports. */
std::vector<std::string> tensorNames(const Graph& graph, const Layer& layer) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < layer.portCount; ++i) {
        for (std::string& name : splitList(graph.portNames[layer.firstPort + i])) {
            names.push_back(std::move(name));
        }
    }
    return names;
}

/** Adds a layer's output port, under its tensor's names and under the name the layer gives it. */
void addOutput(std::unordered_map<std::string, std::string>& outputs, const Graph& graph,
               std::size_t layerIndex, std::string_view portId) {
    const Layer& layer = graph.layers[layerIndex];
    std::string name = withoutReferences(layer.name);
    std::vector<std::string> names;
    const auto port = graph.portById.find({layerIndex, portId});
    if (port != graph.portById.end()) {
        names = splitList(graph.portNames[port->second]);
        if (layer.portCount > 1) {
            name += "." + std::to_string(port->second - layer.firstPort);
        }
    }
    outputs.emplace(name, name);
    for (std::string& tensor : names) {
        outputs.emplace(std::move(tensor), name);
    }
}

void addInput(Topology& topology, const Graph& graph, const Layer& layer, bool namedByLayers) {
    std::vector<std::string> names = tensorNames(graph, layer);
    const std::string name = withoutReferences(layer.name);
    if (namedByLayers) {
        names.push_back(name);
    }
    for (std::string& known : names) {
        if (!layer.reachesOutput) {
            topology.unusedInputs.push_back(std::move(known));
        } else if (namedByLayers) {
            topology.inputs.emplace(std::move(known), name);
        }
    }
}

}  // namespace

Topology readTopology(std::string_view text) {
    Graph graph = readGraph(text);
    markReachingOutput(graph);
    const bool namedByLayers = graph.version <= kLastVersionNamedByLayers;

    Topology topology;
    for (const Layer& layer : graph.layers) {
        if (layer.type == "Parameter") {
            addInput(topology, graph, layer, namedByLayers);
        }
    }
    for (const Edge& edge : graph.edges) {
        const std::size_t* const from = graph.find(edge.fromLayer);
        const std::size_t* const to = graph.find(edge.toLayer);
        if (namedByLayers && from != nullptr && to != nullptr &&
            graph.layers[*to].type == "Result") {
            addOutput(topology.outputs, graph, *from, edge.fromPort);
        }
    }
    return topology;
}

}  // namespace InferenceEngine::runtime
