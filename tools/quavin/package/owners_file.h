#pragma once

#include <cstddef>
#include <string>

namespace quavin_tool {

/// Reads a file with a secret, which must not be open to others unless the user allows it.
/// @param buffer receives the beginning of the file; the caller wipes it.
/// @param capacity the size of `buffer`.
/// @param what the file, as messages call it.
/// @return the number of bytes read; `capacity` if the file is larger.
/// @throws FileException if the file cannot be read, or is open to others.
std::size_t readOwnersFile(const std::string& path, bool allowOpenFile, unsigned char* buffer,
                           std::size_t capacity, const std::string& what);

}  // namespace quavin_tool
