#pragma once

#include <inference_engine.hpp>
#include <string>
#include <vector>

namespace VelmoraQuavin::internal {

/// A blob for an input or output. The name is the network's own, and lives as long as the map of
/// inputs or outputs that it was taken from.
struct NamedBlob {
    const std::string* name;
    InferenceEngine::Blob::Ptr blob;
};

/// Blobs in the order of their names. A list and not a map, since it is made for every prediction.
using NamedBlobs = std::vector<NamedBlob>;

}  // namespace VelmoraQuavin::internal
