#pragma once

#include <inference_engine.hpp>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "engine/openvino/output_pool.h"
#include "quavin/feature.h"

namespace VelmoraQuavin::internal {

/// The pools of a network's outputs, by output name.
using OutputPools = std::map<std::string, std::shared_ptr<OutputPool>>;

/// Makes a blob with memory for every output of a network, in the precision that it has.
/// @throws std::logic_error where an output has no data.
/// @throws InvalidTypeException where an output has a precision that the library has no tensors of.
InferenceEngine::BlobMap makeOutputBlobs(const InferenceEngine::OutputsDataMap& outputsInfo,
                                         const OutputPools& pools);

/// Adds a feature for every descriptor over the blob of the same name, which must be there.
void appendOutputFeatures(const std::vector<ModelFeatureDescriptor>& descriptors,
                          const InferenceEngine::BlobMap& blobs,
                          std::vector<std::shared_ptr<QuavinFeature>>& features);

}  // namespace VelmoraQuavin::internal
