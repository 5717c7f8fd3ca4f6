#include "engine/openvino/input_blobs.h"

#include <cstdint>
#include <string>
#include <typeinfo>

#include "engine/openvino/precision.h"
#include "feature/descriptor_access.h"
#include "tensor/variable_shape.h"

namespace VelmoraQuavin::internal {
namespace {

using InferenceEngine::Blob;
using InferenceEngine::Precision;
using InferenceEngine::TensorDesc;

QuavinFeature* findFeature(const std::vector<std::shared_ptr<QuavinFeature>>& features,
                           const std::string& name) {
    for (const std::shared_ptr<QuavinFeature>& feature : features) {
        if (feature != nullptr &&
            DescriptorAccess::name(feature->featureDescriptor()).view() == name) {
            return feature.get();
        }
    }
    return nullptr;
}

// The library's own tensors are dense by their making, which saves asking those for their strides.
bool isDense(const ITensor& tensor) {
    const std::type_info& type = typeid(tensor);
    return type == typeid(Tensor) || type == typeid(BufferWrappedTensor) ||
           tensor.stride().compare(ITensor::getStrideFromShape(tensor.shape()));
}

bool isInputPrecision(const Precision& precision) {
    switch (precision) {
        case Precision::FP32:
        case Precision::I8:
        case Precision::I16:
        case Precision::I32:
            return true;
        default:
            return false;
    }
}

// The engine reads the network's dimensions from whatever memory the tensor has.
void requireEnoughMemory(const std::string& name, const TensorDesc& description, ITensor* tensor) {
    uint64 needed = description.getPrecision().size();
    for (const std::size_t extent : description.getDims()) {
        needed *= extent;
    }
    const bool hasMemory = tensor != nullptr && tensor->buffer() != nullptr;
    const int64 given = hasMemory ? tensor->bytes() : 0;
    if (!hasMemory || given < 0 || static_cast<uint64>(given) < needed) {
        throw InvalidArgumentsException("Input \"" + name + "\" needs " + std::to_string(needed) +
                                        " bytes and was given " + std::to_string(given));
    }
}

template <typename Element>
Blob::Ptr makeBlobOver(const TensorDesc& description, unsigned char* memory) {
    return InferenceEngine::make_shared_blob<Element>(description,
                                                      reinterpret_cast<Element*>(memory));
}

Blob::Ptr makeBlobOver(const TensorDesc& description, unsigned char* memory) {
    switch (description.getPrecision()) {
        case Precision::FP32:
            return makeBlobOver<float>(description, memory);
        case Precision::I8:
            return makeBlobOver<std::int8_t>(description, memory);
        case Precision::I16:
            return makeBlobOver<std::int16_t>(description, memory);
        default:
            return makeBlobOver<std::int32_t>(description, memory);
    }
}

Blob::Ptr makeInputBlob(const std::string& name, InferenceEngine::InputInfo& info,
                        QuavinFeature& feature) {
    const TensorDescriptor& declared = feature.featureDescriptor().tensorDescriptor();
    requireFixedShape(declared);
    info.setPrecision(toPrecision(declared.tensorType()));

    const std::shared_ptr<ITensor> tensor = feature.asTensor();
    if (tensor != nullptr && !isDense(*tensor)) {
        throw MLFrameworkException("OpenVino: Invalid use of strided tensor");
    }
    const TensorDesc& description = info.getTensorDesc();
    if (!isInputPrecision(description.getPrecision())) {
        throw InvalidTypeException(
            "Openvino only supports float, int8, int16, int32 input datatypes");
    }
    requireEnoughMemory(name, description, tensor.get());
    return makeBlobOver(description, tensor->buffer());
}

}  // namespace

QuavinStatus makeInputBlobs(const InferenceEngine::InputsDataMap& inputsInfo,
                            const std::vector<std::shared_ptr<QuavinFeature>>& features,
                            NamedBlobs& blobs) {
    blobs.reserve(inputsInfo.size());
    for (const auto& [name, info] : inputsInfo) {
        QuavinFeature* const feature = findFeature(features, name);
        if (feature == nullptr) {
            return {EMPTY_INPUT_DESCRIPTOR, "Empty Input Feature Descriptor"};
        }
        blobs.push_back({&name, makeInputBlob(name, *info, *feature)});
    }
    return {SUCCESS, ""};
}

}  // namespace VelmoraQuavin::internal
