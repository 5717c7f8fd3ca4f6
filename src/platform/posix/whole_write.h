#pragma once

#include <cstdint>
#include <string>

namespace VelmoraQuavin::internal::platform {

/// Writes all bytes to an open file; errno tells why where it fails.
bool writeWhole(int file, const void* bytes, std::uint64_t count) noexcept;

/// What failed, and the system's text for it.
std::string problemText(const char* what, int error);

}  // namespace VelmoraQuavin::internal::platform
