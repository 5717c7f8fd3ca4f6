#pragma once

#include <inference_engine.hpp>
#include <memory>

#include "engine/openvino/network_component.h"

namespace VelmoraQuavin::internal {

/// Reads a network's topology and weights into a reader, decrypting secured files in the memory
/// that they were read into. Plain text never reaches the disk, and is wiped where it is not
/// handed on.
/// @param reader reads both.
/// @param topology the network's text.
/// @param weights its constants; one without a path stands for a network without constants.
/// @throws FileException where a file cannot be read or decrypted.
/// @throws std::exception as the reader's failures have it.
void readNetworkFiles(InferenceEngine::ICNNNetReader& reader, const NetworkComponentEntry& topology,
                      const NetworkComponentEntry& weights);

/// The same into a reader that is made where there is none yet, with every failure as the library
/// has it.
/// @throws FileException with the failure's own text.
/// @throws Exception "Unknown/internal exception happened." for what is no std::exception.
void readNetwork(std::shared_ptr<InferenceEngine::ICNNNetReader>& reader,
                 const NetworkComponentEntry& topology, const NetworkComponentEntry& weights);

}  // namespace VelmoraQuavin::internal
