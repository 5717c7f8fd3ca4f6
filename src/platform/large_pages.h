#pragma once

#include <cstddef>

namespace VelmoraQuavin::internal::platform {

/// Asks for large pages behind memory that has not been touched yet, where the system has any to
/// give and the memory is large enough to matter. Changes nothing but the time that filling takes.
void preferLargePages(void* memory, std::size_t size) noexcept;

}  // namespace VelmoraQuavin::internal::platform
