#pragma once

#include <inference_engine.hpp>
#include <memory>

#include "package/source/component_source.h"

namespace VelmoraQuavin::internal {

/// The memory of a single blob of the bytes' size, which lies over them and must not be written to.
/// They are released when the last reference to the blob is dropped.
std::shared_ptr<InferenceEngine::IAllocator> makeMappedAllocator(MappedBytes bytes);

}  // namespace VelmoraQuavin::internal
