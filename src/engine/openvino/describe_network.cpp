#include <inference_engine.hpp>
#include <memory>
#include <string>
#include <utility>

#include "engine/openvino/network_component.h"
#include "engine/openvino/network_reading.h"
#include "engine/openvino/precision.h"
#include "package/target_problem.h"
#include "quavin/network.h"

namespace VelmoraQuavin {
namespace {

using Features = std::vector<ModelFeatureDescriptor>;
using internal::NetworkComponentEntry;

// Releases of 2019 have the value without the name.
constexpr int kBoolPrecision = 41;

// Beside the types that tensors are made of, those that are worth naming when they are refused.
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
            return internal::toDataType(precision);
    }
}

ModelFeatureDescriptor describe(const std::string& name,
                                const InferenceEngine::TensorDesc& description) {
    const InferenceEngine::SizeVector& extents = description.getDims();
    const TensorShape shape(std::vector<int64>(extents.begin(), extents.end()));
    return {QuavinFeatureType::TENSOR,
            true,
            name,
            "",
            TensorDescriptor(name, shape, false, toShownType(description.getPrecision())),
            ImageDescriptor()};
}

void describe(const NetworkComponentEntry& topology, const NetworkComponentEntry& weights,
              Features& inputs, Features& outputs) {
    std::shared_ptr<InferenceEngine::ICNNNetReader> reader;
    internal::readNetwork(reader, topology, weights);
    const InferenceEngine::CNNNetwork network(reader);

    Features networkInputs;
    for (const auto& [name, info] : network.getInputsInfo()) {
        networkInputs.push_back(describe(name, info->getTensorDesc()));
    }
    Features networkOutputs;
    for (const auto& [name, data] : network.getOutputsInfo()) {
        networkOutputs.push_back(describe(name, data->getTensorDesc()));
    }
    inputs = std::move(networkInputs);
    outputs = std::move(networkOutputs);
}

NetworkComponentEntry plainFile(const Filepath& path) {
    return {path.c_str(), ComponentKind::File, path.c_str(), Encryption()};
}

QuavinStatus describePackage(const ModelMetadata& metadata, Features& inputs, Features& outputs) {
    const auto target = metadata.getTargets().find(QuavinModelType::Openvino);
    if (target == metadata.getTargets().end()) {
        internal::diagnoseMissingTarget(metadata);
        return {MODEL_METADATA_ERROR, "The manifest has no target for Openvino"};
    }
    const std::vector<NetworkComponentEntry> entries =
        internal::collectNetworkComponents(target->second.components, metadata.getRootDir());
    QuavinStatus status = internal::checkNetworkComponents(entries);
    if (status.ok()) {
        describe(entries[0], entries[1], inputs, outputs);
    }
    return status;
}

}  // namespace

QuavinStatus describeNetwork(const Filepath& topology, const Filepath& weights,
                             std::vector<ModelFeatureDescriptor>& inputs,
                             std::vector<ModelFeatureDescriptor>& outputs) {
    try {
        describe(plainFile(topology), plainFile(weights), inputs, outputs);
        return {SUCCESS, ""};
    } catch (...) {
        return getStatusFromCurrentException();
    }
}

QuavinStatus describeNetwork(const ModelMetadata& metadata,
                             std::vector<ModelFeatureDescriptor>& inputs,
                             std::vector<ModelFeatureDescriptor>& outputs) {
    try {
        return describePackage(metadata, inputs, outputs);
    } catch (...) {
        return getStatusFromCurrentException();
    }
}

}  // namespace VelmoraQuavin
