#pragma once

#include <cstddef>
#include <string>

#include "quavin/text.h"

namespace VelmoraQuavin::internal::platform {

/// Files of tools that are their owner's alone (keys, above all), and new files in general.

/// Whether a file that others may read or change is accepted.
enum class OpenToOthers { kRefused, kAllowed };

enum class PrivateReading { kDone, kOpenToOthers, kFailed };

/// Reads a file whole. Whether others may read or change it is asked of the opened file. (Of a
/// system that has access lists: whether they allow it to anybody but its owner, this user and
/// administrators.)
/// @param path UTF-8.
/// @param others whether a file that others may read or change is accepted.
/// @param buffer receives up to `capacity` bytes.
/// @param capacity bytes at `buffer`.
/// @param size receives the number of bytes, `capacity` also for a longer file.
/// @param problem receives, for people, why it failed, and what to do about others' rights.
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

/// Writes a new file, which gets its name when it is whole; where that fails, nothing of it stays.
/// A process that is killed leaves at most a file ".quavin-..." beside it, which the next one
/// removes.
/// @param path UTF-8; nothing may be there, nor come there meanwhile.
/// @param bytes the content.
/// @param count bytes at `bytes`.
/// @param readers who may read it.
/// @return why it failed, for people; empty where it went well.
std::string writeNewFile(const String& path, const unsigned char* bytes, std::size_t count,
                         Readers readers);

/// The same over a file that may be there, which keeps its content until its successor is whole;
/// on POSIX the successor has the mode that it had.
/// @param path UTF-8; no link.
std::string replaceFile(const String& path, const unsigned char* bytes, std::size_t count);

/// What came of giving something another name.
enum class Moving { kDone, kNameTaken, kFailed };

/// Gives a file or directory another name in the same file system, where nothing has that name, not
/// at the last moment either.
/// @param from UTF-8, as `to`.
/// @param problem receives, for people, why it failed.
Moving moveToNew(const String& from, const String& to, std::string& problem);

}  // namespace VelmoraQuavin::internal::platform
