#include "engine/openvino/describe_network.h"

#include <inference_engine.hpp>
#include <memory>
#include <string>

#include "engine/openvino/network_reading.h"
#include "engine/openvino/precision.h"

namespace VelmoraQuavin::internal {
namespace {

// Releases of 2019 have the value but no name for it.
constexpr int kBoolPrecision = 41;

// The types that tensors support, and those that are worth naming when they are refused.
DataType toShownType(const InferenceEngine::Precision& precision) {
    if (precision.getPrecVal() == kBoolPrecision) {
        return DataType::BOOL;
    }
    switch (precision) {
        case InferenceEngine::Precision::U8:
            return DataType::UINT8;
        case InferenceEngine::Precision::U16:
            return DataType::UINT16;
        default:
            return toDataType(precision);
    }
}

ModelFeatureDescriptor describe(const std::string& name,
                                const InferenceEngine::TensorDesc& description) {
    return {QuavinFeatureType::TENSOR,
            true,
            name,
            "",
            TensorDescriptor(name, shapeOf(description), false,
                             toShownType(description.getPrecision())),
            ImageDescriptor()};
}

}  // namespace

NetworkPorts describeOpenVinoNetwork(const NetworkComponents& network) {
    std::shared_ptr<InferenceEngine::ICNNNetReader> reader;
    StoredNetwork stored(network);
    readNetwork(reader, stored);
    const InferenceEngine::CNNNetwork description(reader);

    NetworkPorts ports;
    for (const auto& [name, info] : description.getInputsInfo()) {
        ports.inputs.push_back(describe(name, info->getTensorDesc()));
    }
    for (const auto& [name, data] : description.getOutputsInfo()) {
        ports.outputs.push_back(describe(name, data->getTensorDesc()));
    }
    return ports;
}

}  // namespace VelmoraQuavin::internal
