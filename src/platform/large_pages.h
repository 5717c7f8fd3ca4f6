#pragma once

#include <cstddef>

namespace VelmoraQuavin::internal::platform {

/// Requests large pages for memory that has not been touched yet, if the system offers them and the
/// block is large enough to benefit. Affects only how long filling the memory takes.
void preferLargePages(void* memory, std::size_t size) noexcept;

}  // namespace VelmoraQuavin::internal::platform
