#pragma once

#include <inference_engine.hpp>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/openvino/named_blob.h"
#include "engine/openvino/output_pool.h"
#include "quavin/feature.h"

namespace VelmoraQuavin::internal {

/// The pools of a network's outputs, by output name.
using OutputPools = std::map<std::string, std::shared_ptr<OutputPool>>;

/// Creates a blob with memory for every output of a network, in the output's own precision. The
/// names of the blobs point into the map.
/// @throws std::logic_error if an output has no data.
/// @throws InvalidTypeException if an output has a precision for which the library has no tensors.
NamedBlobs makeOutputBlobs(const InferenceEngine::OutputsDataMap& outputsInfo,
                           const OutputPools& pools);

/// The blob with this name; null if there is none.
InferenceEngine::Blob::Ptr findBlob(const NamedBlobs& blobs, std::string_view name);

/// Appends a feature for every descriptor, over the blob of the same name, which must exist.
void appendOutputFeatures(const std::vector<ModelFeatureDescriptor>& descriptors,
                          const NamedBlobs& blobs,
                          std::vector<std::shared_ptr<QuavinFeature>>& features);

}  // namespace VelmoraQuavin::internal
