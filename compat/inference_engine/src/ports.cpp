#include "ports.hpp"

#include <algorithm>
#include <cstdint>
#include <set>
#include <unordered_map>

#include "element_count.hpp"
#include "failure.hpp"
#include "runtime_call.hpp"

namespace InferenceEngine::runtime {
namespace {

using PortHandle = Handle<ov_output_const_port_t>;

/** The calls for a model's inputs and for its outputs differ only in their names. */
struct Calls {
    ov_status_e (*count)(const ov_model_t*, std::size_t*);
    ov_status_e (*byIndex)(const ov_model_t*, std::size_t, ov_output_const_port_t**);
};

Calls callsFor(Direction direction) {
    if (direction == Direction::Input) {
        return {&ov_model_inputs_size, &ov_model_const_input_by_index};
    }
    return {&ov_model_outputs_size, &ov_model_const_output_by_index};
}

/** Replaces the runtime's own check, which mistakes a port without dimensions for a dynamic one. */
bool isDynamic(const ov_partial_shape_t& shape) {
    const auto varies = [](const ov_dimension_t& dimension) {
        return dimension.min != dimension.max;
    };
    return varies(shape.rank) || std::any_of(shape.dims, shape.dims + shape.rank.max, varies);
}

void readPorts(const ov_model_t& model, Direction direction,
               const std::unordered_map<std::string, std::string>& layerNames,
               const std::vector<std::string>& hidden, std::vector<Port>& ports) {
    const Calls calls = callsFor(direction);
    std::set<std::string> seen(hidden.begin(), hidden.end());
    std::size_t count = 0;
    check([&] { return calls.count(&model, &count); });
    for (std::size_t index = 0; index < count; ++index) {
        ov_output_const_port_t* found = nullptr;
        check([&] { return calls.byIndex(&model, index, &found); });
        const PortHandle handle(found);
        Port port;
        port.tensor = anyName(*handle);
        port.name = port.tensor;
        port.direction = direction;
        port.index = index;
        if (port.tensor.empty()) {
            throw Failure(NOT_IMPLEMENTED,
                          std::string(nameOf(direction)) + " " + std::to_string(index) +
                              " of the network has no name: its port needs a tensor name");
        }
        // This name may have been seen before: several Results can show the same port.
        if (!seen.insert(port.tensor).second) {
            continue;
        }
        if (const auto layer = layerNames.find(port.tensor); layer != layerNames.end()) {
            port.name = layer->second;
        }
        check([&] { return ov_port_get_element_type(handle.get(), &port.type); });
        if (shownPrecision(port.type, direction) == Precision::UNSPECIFIED) {
            throw Failure(NOT_IMPLEMENTED, describe(port) + " has an element type that this " +
                                               "interface has no precision for");
        }
        port.dims = readDims(*handle, describe(port));
        ports.push_back(std::move(port));
    }
}

}  // namespace

std::string describe(Direction direction, const std::string& name) {
    return std::string(nameOf(direction)) + " \"" + name + "\"";
}

std::string describe(const Port& port) {
    return describe(port.direction, port.name);
}

std::string anyName(const ov_output_const_port_t& port) {
    char* name = nullptr;
    return attempt([&] { return ov_port_get_any_name(&port, &name); }) == ::OK ? takeText(name)
                                                                               : std::string();
}

SizeVector readDims(const ov_output_const_port_t& port, const std::string& description) {
    PartialShape owner;
    check([&] { return ov_port_get_partial_shape(&port, owner.out()); });
    const ov_partial_shape_t& shape = owner.get();
    if (isDynamic(shape)) {
        throw Failure(NOT_IMPLEMENTED, description + " has dynamic dimensions " +
                                           takeText(ov_partial_shape_to_string(shape)) +
                                           ", which this interface does not know");
    }
    SizeVector dims;
    for (std::int64_t i = 0; i < shape.rank.max; ++i) {
        dims.push_back(static_cast<std::size_t>(shape.dims[i].max));
    }
    if (!countElements(dims)) {
        throw Failure(OUT_OF_BOUNDS, description + " has too many elements");
    }
    return dims;
}

std::vector<Port> readPorts(const ov_model_t& model, const Topology& topology) {
    std::vector<Port> ports;
    readPorts(model, Direction::Input, topology.inputs, topology.unusedInputs, ports);
    readPorts(model, Direction::Output, topology.outputs, {}, ports);
    return ports;
}

}  // namespace InferenceEngine::runtime
