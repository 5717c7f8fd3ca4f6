#include "engine/openvino/input_blobs.h"

#include <cstdint>
#include <string>
#include <typeinfo>

#include "core/diagnostics.h"
#include "engine/openvino/precision.h"
#include "feature/descriptor_access.h"
#include "tensor/tensor_texts.h"
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

// The library's own tensors are always dense, so there is no need to ask them for their strides.
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

// The engine reads as many bytes as the network's dimensions need, whatever memory the tensor has.
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

void diagnoseMissingFeature(const std::string& name,
                            const std::vector<std::shared_ptr<QuavinFeature>>& features) {
    diagnose([&] {
        NameList given;
        for (const std::shared_ptr<QuavinFeature>& feature : features) {
            if (feature != nullptr) {
                given.add(DescriptorAccess::name(feature->featureDescriptor()).view());
            }
        }
        return "predict: the network's input " + inQuotes(name) +
               " has no feature; given: " + (given.empty() ? "none" : given.text());
    });
}

// Describes an input that the engine cannot read in place.
void diagnoseRefusedInput(const std::string& name, const InferenceEngine::InputInfo& info,
                          QuavinFeature& feature) {
    diagnose([&] {
        std::string text = "predict: input " + inQuotes(name) + " of the network has the shape " +
                           shapeText(shapeOf(info.getTensorDesc()));
        if (feature.type() != QuavinFeatureType::TENSOR) {
            return text + ", and its feature is not a tensor but has the type " +
                   GetQuavinFeatureTypeName(feature.type()).str();
        }
        const TensorDescriptor& declared = feature.featureDescriptor().tensorDescriptor();
        text += ", and its feature is declared as " + dataTypeName(declared.tensorType()) + " " +
                shapeText(DescriptorAccess::shape(declared));
        const std::shared_ptr<ITensor> tensor = feature.asTensor();
        return tensor == nullptr ? text + " without a tensor"
                                 : text + " over a tensor of " + dataTypeName(tensor->dataType()) +
                                       " " + shapeText(tensor->shape()) + " with the strides " +
                                       shapeText(tensor->stride());
    });
}

// Having enough bytes is enough to predict, which hides that they may be in another order.
void diagnoseOtherShape(const std::string& name, const TensorDesc& description,
                        const ITensor& tensor) {
    diagnose([&] {
        const TensorShape given = tensor.shape();
        const TensorShape read = shapeOf(description);
        return given.compare(read)
                   ? std::string()
                   : "predict: input " + inQuotes(name) + " has the shape " + shapeText(given) +
                         " and is read as the network's " + shapeText(read);
    });
}

// The feature's tensor, if the engine can read it in place; otherwise throws.
std::shared_ptr<ITensor> readableTensor(InferenceEngine::InputInfo& info, QuavinFeature& feature) {
    const TensorDescriptor& declared = feature.featureDescriptor().tensorDescriptor();
    requireFixedShape(declared);
    info.setPrecision(toPrecision(declared.tensorType()));

    std::shared_ptr<ITensor> tensor = feature.asTensor();
    if (tensor != nullptr && !isDense(*tensor)) {
        throw MLFrameworkException("OpenVino: Invalid use of strided tensor");
    }
    if (!isInputPrecision(info.getTensorDesc().getPrecision())) {
        throw InvalidTypeException(
            "Openvino only supports float, int8, int16, int32 input datatypes");
    }
    return tensor;
}

// Whether a blob lies over this memory, and has this precision. Its dimensions are always the
// input's own.
bool isOver(const Blob& blob, const unsigned char* memory, const Precision& precision) {
    return blob.getTensorDesc().getPrecision() == precision &&
           blob.cbuffer().as<const unsigned char*>() == memory;
}

void setInputBlob(InputPort& port, QuavinFeature& feature) {
    std::shared_ptr<ITensor> tensor;
    try {
        tensor = readableTensor(*port.info, feature);
    } catch (...) {
        diagnoseRefusedInput(port.name, *port.info,
                             feature);  // none of the messages names the input
        throw;
    }
    const TensorDesc& description = port.info->getTensorDesc();
    requireEnoughMemory(port.name, description, tensor.get());
    diagnoseOtherShape(port.name, description, *tensor);
    unsigned char* const memory = tensor->buffer();
    if (port.blob == nullptr || !isOver(*port.blob, memory, description.getPrecision())) {
        port.blob = makeBlobOver(description, memory);
    }
}

}  // namespace

InputPorts makeInputPorts(const InferenceEngine::InputsDataMap& inputs) {
    InputPorts ports;
    ports.reserve(inputs.size());
    for (const auto& [name, info] : inputs) {
        ports.push_back({name, info, nullptr});
    }
    return ports;
}

QuavinStatus setInputBlobs(InputPorts& ports,
                           const std::vector<std::shared_ptr<QuavinFeature>>& features) {
    for (InputPort& port : ports) {
        QuavinFeature* const feature = findFeature(features, port.name);
        if (feature == nullptr) {
            diagnoseMissingFeature(port.name, features);
            return {EMPTY_INPUT_DESCRIPTOR, "Empty Input Feature Descriptor"};
        }
        setInputBlob(port, *feature);
    }
    return {SUCCESS, ""};
}

}  // namespace VelmoraQuavin::internal
