#include "engine/openvino/output_blobs.h"

#include <cstdint>
#include <stdexcept>

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

}  // namespace

NamedBlobs makeOutputBlobs(const InferenceEngine::OutputsDataMap& outputsInfo,
                           const OutputPools& pools) {
    NamedBlobs blobs;
    blobs.reserve(outputsInfo.size());
    for (const auto& [name, data] : outputsInfo) {
        if (data == nullptr) {
            throw std::logic_error("output data pointer is not valid");
        }
        // Sets the same precision, which declares it to the engine.
        data->setPrecision(data->getPrecision());
        // A blob without dimensions holds one element only if its layout is scalar.
        const InferenceEngine::Layout layout =
            data->getDims().empty() ? InferenceEngine::SCALAR : InferenceEngine::ANY;
        const TensorDesc description(data->getPrecision(), data->getDims(), layout);
        blobs.push_back({&name, allocateBlob(name, description, pools.at(name))});
    }
    return blobs;
}

Blob::Ptr findBlob(const NamedBlobs& blobs, std::string_view name) {
    for (const NamedBlob& candidate : blobs) {
        if (*candidate.name == name) {
            return candidate.blob;
        }
    }
    return nullptr;
}

void appendOutputFeatures(const std::vector<ModelFeatureDescriptor>& descriptors,
                          const NamedBlobs& blobs,
                          std::vector<std::shared_ptr<QuavinFeature>>& features) {
    features.reserve(features.size() + descriptors.size());
    for (const ModelFeatureDescriptor& descriptor : descriptors) {
        features.push_back(std::make_shared<QuavinFeatureTensor>(
            descriptor, std::make_shared<OpenVinoTensor>(
                            findBlob(blobs, DescriptorAccess::name(descriptor).view()))));
    }
}

}  // namespace VelmoraQuavin::internal
