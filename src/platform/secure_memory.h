#pragma once

#include <cstddef>

namespace VelmoraQuavin::internal::platform {

/// Overwrites memory in a way that the compiler does not leave out.
void wipeMemory(void* bytes, std::size_t count) noexcept;

}  // namespace VelmoraQuavin::internal::platform
