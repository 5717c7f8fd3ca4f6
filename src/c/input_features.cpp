#include "c/input_features.h"

#include <string>

#include "c/guard.h"
#include "c/host_tensor.h"
#include "tensor/element_size.h"

namespace VelmoraQuavin::internal {
namespace {

std::string nameOf(const Port& port) {
    return "Input \"" + port.name() + '"';
}

[[noreturn]] void refuseBytes(const Port& port, const std::string& wanted, std::size_t given) {
    throw InvalidArgumentsException(nameOf(port) + " needs " + wanted + " bytes and was given " +
                                    std::to_string(given));
}

// A row of elements, because the network alone knows the shape.
std::shared_ptr<QuavinFeature> rowOver(const Port& port, const void* data, std::size_t size) {
    const ModelFeatureDescriptor& declared = port.descriptor();
    const DataType type = declared.tensorDescriptor().tensorType();
    const auto element = static_cast<std::size_t>(elementSize(type));
    if (element == 0 || size % element != 0) {
        refuseBytes(port, "a multiple of " + std::to_string(element), size);
    }
    const TensorShape row(static_cast<int64>(size / element));
    auto tensor = std::make_shared<HostTensor>(type, row);
    tensor->pointAt(data, size);
    return std::make_shared<QuavinFeatureTensor>(
        ModelFeatureDescriptor(declared.type(), declared.required(), declared.name(),
                               declared.description(), TensorDescriptor(row, type), {}),
        std::move(tensor));
}

}  // namespace

InputFeatures::InputFeatures(const Ports& ports) : features_(ports.size()) {
    for (const Port& port : ports) {
        Input input;
        if (port.isTensor() && !port.isVariable()) {
            const TensorDescriptor& declared = port.descriptor().tensorDescriptor();
            input.tensor = std::make_shared<HostTensor>(declared.tensorType(), declared.shape());
            input.feature = std::make_shared<QuavinFeatureTensor>(port.descriptor(), input.tensor);
        }
        inputs_.push_back(std::move(input));
    }
}

InputFeatures::~InputFeatures() = default;

std::shared_ptr<QuavinFeature> InputFeatures::featureOver(const Port& port, const Input& input,
                                                          const void* data,
                                                          std::size_t size) const {
    if (data == nullptr) {
        if (size != 0) {
            throw InvalidArgumentsException(nameOf(port) + " is null");
        }
        return nullptr;  // left out
    }
    if (!port.isTensor()) {
        throw InvalidTypeException(nameOf(port) + " is of the type " +
                                   GetQuavinFeatureTypeName(port.descriptor().type()).str() +
                                   ", and only tensors can be given");
    }
    if (port.isVariable()) {
        return rowOver(port, data, size);
    }
    if (size != port.bytes()) {
        refuseBytes(port, std::to_string(port.bytes()), size);
    }
    input.tensor->pointAt(data, size);
    return input.feature;
}

const std::vector<std::shared_ptr<QuavinFeature>>& InputFeatures::over(const Ports& ports,
                                                                       const void* const* inputs,
                                                                       const std::size_t* sizes,
                                                                       std::size_t count) {
    if (count != ports.size()) {
        throw InvalidArgumentsException("The model has " + std::to_string(ports.size()) +
                                        " inputs and was given " + std::to_string(count));
    }
    if (count != 0) {
        requireGiven(inputs, "inputs");
        requireGiven(sizes, "sizes");
    }
    for (std::size_t i = 0; i < count; ++i) {
        features_[i] = featureOver(ports[i], inputs_[i], inputs[i], sizes[i]);
    }
    return features_;
}

}  // namespace VelmoraQuavin::internal
