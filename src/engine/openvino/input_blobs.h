#pragma once

#include <inference_engine.hpp>
#include <memory>
#include <string>
#include <vector>

#include "quavin/feature.h"
#include "quavin/status.h"

namespace VelmoraQuavin::internal {

/// An input of a loaded network.
struct InputPort {
    std::string name;
    InferenceEngine::InputInfo::Ptr info;
    /// Over the memory that the last prediction read. Made anew only for other memory; may dangle
    /// between predictions.
    InferenceEngine::Blob::Ptr blob;
};
using InputPorts = std::vector<InputPort>;

/// The inputs of a network, in the order of their names.
InputPorts makeInputPorts(const InferenceEngine::InputsDataMap& inputs);

/// Gives every input a blob over the memory of the feature with the same name, without copying.
/// Sets the features' element types on the inputs.
/// @return EMPTY_INPUT_DESCRIPTOR if an input has no feature.
/// @throws Exception of several classes if a feature cannot be read in place; see
///         QuavinModel::predict.
QuavinStatus setInputBlobs(InputPorts& ports,
                           const std::vector<std::shared_ptr<QuavinFeature>>& features);

}  // namespace VelmoraQuavin::internal
