#pragma once

#include <inference_engine.hpp>
#include <memory>
#include <string_view>

#include "package/source/network_components.h"

namespace VelmoraQuavin::internal {

/// Passes a network's topology and weights to a reader. A decrypted topology is wiped afterwards,
/// decrypted weights when the last reference to their blob is dropped.
/// @param mapWeights maps the weights instead of reading them, unless they are secured or their
///     source can only read. They stay mapped as long as their blob.
/// @throws FileException if a component cannot be read, mapped or decrypted.
/// @throws std::exception if the reader fails.
void readComponents(InferenceEngine::ICNNNetReader& reader, const NetworkComponents& network,
                    bool mapWeights = false);

/// Passes the text of a network that has no weights to a reader.
/// @throws std::exception if the reader fails.
void readWithoutWeights(InferenceEngine::ICNNNetReader& reader, std::string_view topology);

/// As readComponents(), but creates the reader if there is none yet, and reports failures as the
/// library does.
/// @throws FileException with the failure's own message.
/// @throws Exception "Unknown/internal exception happened." for anything that is not a
///         std::exception.
void readNetwork(std::shared_ptr<InferenceEngine::ICNNNetReader>& reader,
                 const NetworkComponents& network, bool mapWeights = false);

}  // namespace VelmoraQuavin::internal
