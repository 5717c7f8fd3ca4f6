#pragma once

#include <cstddef>

namespace VelmoraQuavin::internal::platform {

/// Overwrites memory in a way that the compiler cannot optimise away.
void wipeMemory(void* bytes, std::size_t count) noexcept;

}  // namespace VelmoraQuavin::internal::platform
