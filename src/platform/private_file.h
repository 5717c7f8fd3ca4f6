#pragma once

#include <cstddef>
#include <string>

#include "quavin/text.h"

namespace VelmoraQuavin::internal::platform {

/// Small files that are their owner's alone, for tools: keys, above all.

/// Whether a file that others may read is accepted.
enum class OpenToOthers { kRefused, kAllowed };

/// Reads a file whole. Whether others may read it is asked of the opened file, where the system has
/// such rights.
/// @param path UTF-8.
/// @param others whether a file that others may read is accepted.
/// @param buffer receives up to `capacity` bytes.
/// @param capacity bytes at `buffer`.
/// @param size receives the number of bytes, `capacity` also for a longer file.
/// @return why it failed, for people; empty where it went well.
std::string readPrivateFile(const String& path, OpenToOthers others, unsigned char* buffer,
                            std::size_t capacity, std::size_t& size);

/// Writes a new file that its owner alone may read.
/// @param path UTF-8; nothing may be there yet.
/// @param bytes the content.
/// @param count bytes at `bytes`.
/// @return why it failed, for people; empty where it went well.
std::string writePrivateFile(const String& path, const unsigned char* bytes, std::size_t count);

}  // namespace VelmoraQuavin::internal::platform
