#pragma once

#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "quavin/feature.h"

namespace VelmoraQuavin::testing {

using Features = std::vector<std::shared_ptr<QuavinFeature>>;

/// The feature with this name; throws if there is none.
inline const std::shared_ptr<QuavinFeature>& named(const Features& features,
                                                   const std::string& name) {
    for (const std::shared_ptr<QuavinFeature>& feature : features) {
        if (feature->featureDescriptor().name() == name) {
            return feature;
        }
    }
    throw std::out_of_range("no feature \"" + name + "\"");
}

/// Copies values to the beginning of a tensor.
template <typename Value>
void fill(ITensor& tensor, const std::vector<Value>& values) {
    std::memcpy(tensor.buffer(), values.data(), values.size() * sizeof(Value));
}

/// Copies values to the beginning of a feature's tensor.
template <typename Value>
void fill(const std::shared_ptr<QuavinFeature>& feature, const std::vector<Value>& values) {
    fill(*feature->asTensor(), values);
}

/// All values of a feature's tensor.
template <typename Value>
std::vector<Value> valuesOf(const std::shared_ptr<QuavinFeature>& feature) {
    const std::shared_ptr<const ITensor> tensor = std::as_const(*feature).asTensor();
    std::vector<Value> values(static_cast<std::size_t>(tensor->bytes()) / sizeof(Value));
    std::memcpy(values.data(), tensor->buffer(), values.size() * sizeof(Value));
    return values;
}

/// The descriptor of a tensor.
inline ModelFeatureDescriptor tensorDescriptor(const std::string& name, const TensorShape& shape,
                                               DataType type) {
    return ModelFeatureDescriptor(QuavinFeatureType::TENSOR, true, name, "",
                                  TensorDescriptor(name, shape, false, type), ImageDescriptor());
}

/// A feature with the given tensor.
inline std::shared_ptr<QuavinFeature> featureOver(const std::string& name, const TensorShape& shape,
                                                  DataType type, std::shared_ptr<ITensor> tensor) {
    return std::make_shared<QuavinFeatureTensor>(tensorDescriptor(name, shape, type),
                                                 std::move(tensor));
}

/// A feature with a new tensor of these values.
template <typename Value>
std::shared_ptr<QuavinFeature> featureOf(const std::string& name, const TensorShape& shape,
                                         DataType type, const std::vector<Value>& values) {
    auto tensor = std::make_shared<Tensor>(type, shape);
    fill(*tensor, values);
    return featureOver(name, shape, type, tensor);
}

}  // namespace VelmoraQuavin::testing
