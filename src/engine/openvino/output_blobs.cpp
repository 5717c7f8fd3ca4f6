#include "engine/openvino/output_blobs.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string_view>

#include "core/diagnostics.h"
#include "engine/openvino/openvino_tensor.h"
#include "feature/descriptor_access.h"

namespace VelmoraQuavin::internal {
namespace {

using InferenceEngine::Blob;
using InferenceEngine::Precision;
using InferenceEngine::TensorDesc;

template <typename Element>
Blob::Ptr allocateBlob(const TensorDesc& description, const std::shared_ptr<OutputPool>& pool) {
    auto blob = InferenceEngine::make_shared_blob<Element>(
        description, std::static_pointer_cast<InferenceEngine::IAllocator>(pool));
    blob->allocate();
    return blob;
}

Blob::Ptr allocateBlob(const std::string& name, const TensorDesc& description,
                       const std::shared_ptr<OutputPool>& pool) {
    switch (description.getPrecision()) {
        case Precision::FP32:
            return allocateBlob<float>(description, pool);
        case Precision::I8:
            return allocateBlob<std::int8_t>(description, pool);
        case Precision::I16:
            return allocateBlob<std::int16_t>(description, pool);
        case Precision::I32:
            return allocateBlob<std::int32_t>(description, pool);
        default:
            diagnose([&] {
                return "predict: the network's output " + inQuotes(name) + " has the precision " +
                       description.getPrecision().name();
            });
            throw InvalidTypeException(
                "Openvino only supports float, int8, int16, int32 output datatypes");
    }
}

TensorDesc describeBlob(const InferenceEngine::DataPtr& data) {
    if (data == nullptr) {
        return {};  // predictions refuse it
    }
    // A blob without dimensions holds one element only if its layout is scalar.
    const InferenceEngine::Layout layout =
        data->getDims().empty() ? InferenceEngine::SCALAR : InferenceEngine::ANY;
    return {data->getPrecision(), data->getDims(), layout};
}

OutputPorts::const_iterator findPort(const OutputPorts& ports, std::string_view name) {
    return std::find_if(ports.begin(), ports.end(),
                        [name](const OutputPort& port) { return port.name == name; });
}

}  // namespace

OutputPorts makeOutputPorts(const InferenceEngine::OutputsDataMap& outputs) {
    OutputPorts ports;
    ports.reserve(outputs.size());
    for (const auto& [name, data] : outputs) {
        ports.push_back({name, data, describeBlob(data), OutputPool::make()});
    }
    return ports;
}

void closePools(const OutputPorts& ports) noexcept {
    for (const OutputPort& port : ports) {
        port.pool->close();
    }
}

OutputBlobs makeOutputBlobs(const OutputPorts& ports) {
    OutputBlobs blobs;
    blobs.reserve(ports.size());
    for (const OutputPort& port : ports) {
        if (port.data == nullptr) {
            throw std::logic_error("output data pointer is not valid");
        }
        // Sets the same precision, which declares it to the engine.
        port.data->setPrecision(port.data->getPrecision());
        blobs.push_back(allocateBlob(port.name, port.description, port.pool));
    }
    return blobs;
}

QuavinStatus checkOutputNames(const std::vector<ModelFeatureDescriptor>& declared,
                              const OutputPorts& ports) {
    for (const ModelFeatureDescriptor& descriptor : declared) {
        const String& name = DescriptorAccess::name(descriptor);
        if (!ports.empty() && findPort(ports, name.view()) == ports.end()) {
            return {MODEL_METADATA_ERROR, "The network has no output \"" + name + "\""};
        }
    }
    return {SUCCESS, ""};
}

void appendOutputFeatures(const std::vector<ModelFeatureDescriptor>& declared,
                          const OutputPorts& ports, const OutputBlobs& blobs,
                          std::vector<std::shared_ptr<QuavinFeature>>& features) {
    features.reserve(features.size() + declared.size());
    for (const ModelFeatureDescriptor& descriptor : declared) {
        const auto port = findPort(ports, DescriptorAccess::name(descriptor).view());
        const auto index = static_cast<std::size_t>(port - ports.begin());
        features.push_back(std::make_shared<QuavinFeatureTensor>(
            descriptor, std::make_shared<OpenVinoTensor>(blobs[index])));
    }
}

}  // namespace VelmoraQuavin::internal
