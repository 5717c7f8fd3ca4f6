#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "quavin/c.h"
#include "quavin/feature.h"

namespace VelmoraQuavin::internal {

/// One input or output, with the texts that a quavin_port points to.
class Port {
public:
    explicit Port(const ModelFeatureDescriptor& descriptor);

    const ModelFeatureDescriptor& descriptor() const { return descriptor_; }
    const std::string& name() const { return name_; }
    bool isTensor() const { return descriptor_.type() == QuavinFeatureType::TENSOR; }
    bool isVariable() const { return descriptor_.tensorDescriptor().variableShape(); }
    /// The bytes of a tensor; 0 if its shape is variable or too large, or it is not a tensor.
    std::size_t bytes() const { return bytes_; }
    /// Points into this object.
    quavin_port plain() const;

private:
    ModelFeatureDescriptor descriptor_;
    std::string name_;
    std::string description_;
    std::vector<std::int64_t> dims_;
    std::size_t bytes_ = 0;
};

using Ports = std::vector<Port>;

Ports portsOf(const std::vector<ModelFeatureDescriptor>& descriptors);

}  // namespace VelmoraQuavin::internal
