#pragma once

#include <inference_engine.hpp>

#include "engine/openvino/network_component.h"

namespace VelmoraQuavin::internal {

/// Reads a network's topology and weights into a reader, decrypting secured files in the memory
/// that they were read into. Plain text never reaches the disk, and is wiped where it is not
/// handed on.
/// @throws FileException where a file cannot be read or decrypted.
/// @throws std::exception as the reader's failures have it.
void readNetworkFiles(InferenceEngine::ICNNNetReader& reader, const NetworkComponentEntry& topology,
                      const NetworkComponentEntry& weights);

}  // namespace VelmoraQuavin::internal
