#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "c/port.h"
#include "quavin/feature.h"

namespace VelmoraQuavin::internal {

class HostTensor;

/// The inputs of a model, as features over the caller's memory. Made once and pointed at other
/// memory for each prediction, because most of a feature's cost is its description.
class InputFeatures {
public:
    explicit InputFeatures(const Ports& ports);
    ~InputFeatures();

    /// The features over this memory; valid until the next call.
    /// @throws InvalidArgumentsException for a wrong number of inputs or bytes.
    /// @throws InvalidTypeException for an input that is not a tensor.
    const std::vector<std::shared_ptr<QuavinFeature>>& over(const Ports& ports,
                                                            const void* const* inputs,
                                                            const std::size_t* sizes,
                                                            std::size_t count);

private:
    struct Input {
        std::shared_ptr<HostTensor> tensor;
        std::shared_ptr<QuavinFeature> feature;
    };

    std::shared_ptr<QuavinFeature> featureOver(const Port& port, const Input& input,
                                               const void* data, std::size_t size) const;

    std::vector<Input> inputs_;
    std::vector<std::shared_ptr<QuavinFeature>> features_;
};

}  // namespace VelmoraQuavin::internal
