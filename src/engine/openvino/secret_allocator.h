#pragma once

#include <inference_engine.hpp>
#include <memory>

namespace VelmoraQuavin::internal {

/// Memory for decrypted weights: overwritten before it is freed, when the last reference to the
/// blob is dropped.
std::shared_ptr<InferenceEngine::IAllocator> makeSecretAllocator();

}  // namespace VelmoraQuavin::internal
