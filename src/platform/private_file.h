#pragma once

#include <cstddef>
#include <string>

#include "quavin/text.h"

namespace VelmoraQuavin::internal::platform {

/// Files of tools that are their owner's alone (keys, above all), and new files in general.

/// Whether a file that others may read is accepted.
enum class OpenToOthers { kRefused, kAllowed };

enum class PrivateReading { kDone, kOpenToOthers, kFailed };

/// Reads a file whole. Whether others may read it is asked of the opened file. (Of a system that
/// has access lists: whether they allow it to anybody but its owner, this user and administrators.)
/// @param path UTF-8.
/// @param others whether a file that others may read is accepted.
/// @param buffer receives up to `capacity` bytes.
/// @param capacity bytes at `buffer`.
/// @param size receives the number of bytes, `capacity` also for a longer file.
/// @param problem receives, for people, why it failed, and what to do about other readers.
PrivateReading readPrivateFile(const String& path, OpenToOthers others, unsigned char* buffer,
                               std::size_t capacity, std::size_t& size, std::string& problem);

/// Makes a new directory that its owner alone may enter. (Where what is moved keeps the rights of
/// the directory that it was made in, as on Windows, it has those of the directory above.)
/// @param path UTF-8.
/// @return whether it is there and new.
bool makePrivateDirectory(const String& path);

/// Who may read a new file, before the process's umask; on Windows "everyone" is whoever the
/// directory's own access list says.
enum class Readers { kOwner, kEveryone };

/// Writes a new file; where that fails, nothing of it stays.
/// @param path UTF-8; nothing may be there yet.
/// @param bytes the content.
/// @param count bytes at `bytes`.
/// @param readers who may read it.
/// @return why it failed, for people; empty where it went well.
std::string writeNewFile(const String& path, const unsigned char* bytes, std::size_t count,
                         Readers readers);

}  // namespace VelmoraQuavin::internal::platform
