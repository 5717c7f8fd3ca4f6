#pragma once

#include <inference_engine.hpp>
#include <string>
#include <vector>

namespace VelmoraQuavin::internal {

/// A blob for an input or output. The name belongs to the network's map of inputs or outputs, and
/// lives as long as that map.
struct NamedBlob {
    const std::string* name;
    InferenceEngine::Blob::Ptr blob;
};

/// Blobs in the order of their names. A vector rather than a map, since one is built for every
/// prediction.
using NamedBlobs = std::vector<NamedBlob>;

}  // namespace VelmoraQuavin::internal
