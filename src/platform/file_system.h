#pragma once

#include <filesystem>

#include "quavin/text.h"

namespace VelmoraQuavin::internal::platform {

/// The outcomes of creating a directory that callers distinguish.
enum class DirectoryCreation { kCreated, kParentMissing, kOtherFailure };

/// Creates one directory; `path` is read up to its first zero byte.
DirectoryCreation createDirectory(const String& path);
/// Removes a file, never a directory; `path` is read up to its first zero byte.
/// @return whether it is gone.
bool removeFile(const String& path);
/// Whether the parent directory exists and the entry does not. False in every other case, including
/// when it cannot be determined.
/// @throws std::range_error "bad conversion" if the path is not UTF-8.
bool isMissing(const String& path);
/// The path for the standard library, through the wide interface on Windows; `path` is read up to
/// its first zero byte.
/// @throws std::range_error "bad conversion" if the path is not UTF-8.
std::filesystem::path standardPath(const String& path);

}  // namespace VelmoraQuavin::internal::platform
