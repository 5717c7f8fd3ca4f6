#pragma once

#include <inference_engine.hpp>
#include <memory>
#include <vector>

#include "engine/openvino/named_blob.h"
#include "quavin/feature.h"
#include "quavin/status.h"

namespace VelmoraQuavin::internal {

/// Creates a blob for every input of a network, over the memory of the feature with the same name,
/// without copying. Sets the features' element types on the network's inputs.
/// @param blobs receives the blobs in the order of the inputs; their names point into the map.
/// @return EMPTY_INPUT_DESCRIPTOR if an input has no feature.
/// @throws Exception of several classes if a feature cannot be read in place; see
///         QuavinModel::predict.
QuavinStatus makeInputBlobs(const InferenceEngine::InputsDataMap& inputsInfo,
                            const std::vector<std::shared_ptr<QuavinFeature>>& features,
                            NamedBlobs& blobs);

}  // namespace VelmoraQuavin::internal
