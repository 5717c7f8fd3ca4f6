#pragma once

#include <cstddef>
#include <string>

#include "quavin/text.h"

namespace VelmoraQuavin::internal::platform {

/// Files that are private to their owner (keys, above all), and new files in general.

/// Whether a file that others may read or change is accepted.
enum class OpenToOthers { kRefused, kAllowed };

enum class PrivateReading { kDone, kOpenToOthers, kFailed };

/// Reads a file whole. Whether others may read or change it is checked on the opened file. (On a
/// system with access lists, "others" are everyone but the owner, this user and administrators.)
/// @param path in UTF-8.
/// @param others whether to accept a file that others may read or change.
/// @param buffer receives up to `capacity` bytes.
/// @param capacity the number of bytes at `buffer`.
/// @param size receives the number of bytes read; `capacity` if the file is longer.
/// @param problem receives a human-readable reason on failure, with advice on revoking the rights
///        of others.
PrivateReading readPrivateFile(const String& path, OpenToOthers others, unsigned char* buffer,
                               std::size_t capacity, std::size_t& size, std::string& problem);

/// Creates a directory that only its owner may enter. (On systems where a moved file keeps the
/// rights of the directory it was created in, as on Windows, the new directory inherits the rights
/// of its parent instead.)
/// @param path in UTF-8.
/// @return whether the directory was created.
bool makePrivateDirectory(const String& path);

/// Who may read a new file, before the process's umask; on Windows "everyone" means whoever the
/// directory's access list allows.
enum class Readers { kOwner, kEveryone };

/// Writes a new file, which gets its name once it is complete; on failure nothing is left behind. A
/// killed process leaves at most a file ".quavin-..." next to it, which the next process removes.
/// @param path in UTF-8; must not exist, nor be created in the meantime.
/// @param bytes the content.
/// @param count the number of bytes at `bytes`.
/// @param readers who may read the file.
/// @return a human-readable reason on failure; empty on success.
std::string writeNewFile(const String& path, const unsigned char* bytes, std::size_t count,
                         Readers readers);

/// As above, but replaces any existing file, which keeps its content until the new one is complete.
/// @param path in UTF-8; a link is replaced itself, not the file it leads to.
/// @param readers if it is everyone, on POSIX the new file takes over the mode of the existing one.
std::string replaceFile(const String& path, const unsigned char* bytes, std::size_t count,
                        Readers readers = Readers::kEveryone);

/// Removes unfinished files that killed processes of this user have left in a directory, for
/// callers that go through all its files. Failures are ignored. (On Windows there are none: the
/// system removes them with the process.)
/// @param path of the directory, in UTF-8.
void removeUnfinishedFiles(const String& path);

/// The outcome of renaming a file or directory.
enum class Moving { kDone, kNameTaken, kFailed };

/// Renames a file or directory within the same file system. Never replaces anything, not even
/// something created at the last moment.
/// @param from in UTF-8, like `to`.
/// @param problem receives a human-readable reason on failure.
Moving moveToNew(const String& from, const String& to, std::string& problem);

}  // namespace VelmoraQuavin::internal::platform
