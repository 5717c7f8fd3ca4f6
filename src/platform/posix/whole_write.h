#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace VelmoraQuavin::internal::platform {

/// As read(), but not interrupted by signals.
ssize_t readSome(int file, void* buffer, std::size_t count) noexcept;

/// Writes all bytes to an open file; on failure errno tells why.
bool writeWhole(int file, const void* bytes, std::uint64_t count) noexcept;

/// A message that says what failed, followed by the system's text for the error.
std::string problemText(const char* what, int error);

}  // namespace VelmoraQuavin::internal::platform
