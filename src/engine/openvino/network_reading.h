#pragma once

#include <inference_engine.hpp>
#include <memory>

#include "package/source/network_components.h"

namespace VelmoraQuavin::internal {

/// Hands a network's topology and weights to a reader. The decrypted topology is wiped afterwards,
/// decrypted weights when the last holder of their blob lets them go.
/// @throws FileException if a component cannot be read or decrypted.
/// @throws std::exception as the reader fails.
void readComponents(InferenceEngine::ICNNNetReader& reader, const NetworkComponents& network);

/// The same into a reader that is created if there is none yet, with failures as the library
/// reports them.
/// @throws FileException with the failure's own text.
/// @throws Exception "Unknown/internal exception happened." for what is no std::exception.
void readNetwork(std::shared_ptr<InferenceEngine::ICNNNetReader>& reader,
                 const NetworkComponents& network);

}  // namespace VelmoraQuavin::internal
