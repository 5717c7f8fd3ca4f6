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

/// Makes a blob with memory for every output of a network, in the precision that it has. The names
/// of the blobs are those of the map.
/// @throws std::logic_error where an output has no data.
/// @throws InvalidTypeException where an output has a precision that the library has no tensors of.
NamedBlobs makeOutputBlobs(const InferenceEngine::OutputsDataMap& outputsInfo,
                           const OutputPools& pools);

/// The blob of a name; null where there is none.
InferenceEngine::Blob::Ptr findBlob(const NamedBlobs& blobs, std::string_view name);

/// Adds a feature for every descriptor over the blob of the same name, which must be there.
void appendOutputFeatures(const std::vector<ModelFeatureDescriptor>& descriptors,
                          const NamedBlobs& blobs,
                          std::vector<std::shared_ptr<QuavinFeature>>& features);

}  // namespace VelmoraQuavin::internal
