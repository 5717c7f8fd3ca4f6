#include "passed_inputs.hpp"

#include <string_view>
#include <unordered_set>

#include "conversion.hpp"

namespace InferenceEngine::runtime {

void separatePassedInputs(Handle<ov_model_t>& model, const std::vector<Port>& ports) {
    std::unordered_set<std::string_view> inputs;
    for (const Port& port : ports) {
        if (port.direction == Direction::Input) {
            inputs.insert(port.tensor);
        }
    }
    std::vector<PortType> detours;
    std::vector<PortType> returns;
    for (const Port& port : ports) {
        const bool passed = port.direction == Direction::Output && inputs.count(port.tensor) != 0;
        // Other types are converted on the way anyway.
        if (passed && (port.type == ::F32 || port.type == ::I32)) {
            detours.push_back({port.direction, port.index, port.type == ::F32 ? ::F64 : ::I64});
            returns.push_back({port.direction, port.index, port.type});
        }
    }
    convertPorts(model, detours);
    convertPorts(model, returns);
}

}  // namespace InferenceEngine::runtime
