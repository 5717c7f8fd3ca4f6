#include "runtime_network.hpp"

#include <utility>

#include "compile.hpp"
#include "conversion.hpp"
#include "failure.hpp"
#include "passed_inputs.hpp"

namespace InferenceEngine::runtime {

RuntimeNetwork::RuntimeNetwork(Handle<ov_model_t> model, Blob::Ptr weights,
                               const Topology& topology)
    : weights_(std::move(weights)), model_(std::move(model)) {
    std::vector<Port> ports = readPorts(*model_, topology);
    separatePassedInputs(model_, ports);
    std::vector<PortType> conversions;
    for (Port& port : ports) {
        const Precision shown = shownPrecision(port.type, port.direction);
        if (port.type != elementTypeOf(shown)) {
            conversions.push_back({port.direction, port.index, elementTypeOf(shown)});
        }
        const TensorDesc desc(shown, port.dims, TensorDesc::getLayoutByDims(port.dims));
        const auto data = std::make_shared<Data>(port.name, desc);
        if (port.direction == Direction::Input) {
            const auto input = std::make_shared<InputInfo>();
            input->setInputData(data);
            inputs_[port.name] = input;
        } else {
            outputs_[port.name] = data;
        }
        ports_.push_back({std::move(port), data, shown, shown});
    }
    convertPorts(model_, conversions);
}

bool RuntimeNetwork::canBecome(const NetworkPort& port, Precision wanted) {
    if (port.current == port.shown || port.current == wanted) {
        return true;
    }
    const bool input = port.port.direction == Direction::Input;
    return holdsAllOf(port.current, input ? wanted : port.shown);
}

void RuntimeNetwork::takePrecisions() {
    std::vector<PortType> conversions;
    for (const NetworkPort& port : ports_) {
        const Precision wanted = port.data->getPrecision();
        if (wanted == port.current) {
            continue;
        }
        const ov_element_type_e type = elementTypeOf(wanted);
        if (type == ::DYNAMIC) {
            throw Failure(NOT_IMPLEMENTED,
                          describe(port.port) + " can't be loaded with precision " + wanted.name());
        }
        if (!canBecome(port, wanted)) {
            throw Failure(NOT_IMPLEMENTED, describe(port.port) + " was loaded with precision " +
                                               port.current.name() +
                                               " before and can't be loaded with " + wanted.name() +
                                               " without loss: read the network again");
        }
        conversions.push_back({port.port.direction, port.port.index, type});
    }
    convertPorts(model_, conversions);
    for (NetworkPort& port : ports_) {
        port.current = port.data->getPrecision();
    }
}

std::shared_ptr<LoadedNetwork> RuntimeNetwork::load(ov_core_t& core, const std::string& device) {
    takePrecisions();
    std::vector<LoadedPort> loaded;
    for (const NetworkPort& port : ports_) {
        const Port& read = port.port;
        loaded.push_back({read.name, read.direction, read.index, port.current, read.dims});
    }
    return details::shared_from_irelease(
        new LoadedNetwork(compile(core, *model_, device), std::move(loaded), weights_));
}

}  // namespace InferenceEngine::runtime
