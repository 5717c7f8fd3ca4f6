#pragma once

#include "quavin/text.h"

namespace VelmoraQuavin::internal::platform {

/// What came of creating a directory, as far as callers tell outcomes apart.
enum class DirectoryCreation { kCreated, kParentMissing, kOtherFailure };

/// Creates one directory; `path` is read up to its first zero byte.
DirectoryCreation createDirectory(const String& path);
/// Removes a file, never a directory; `path` is read up to its first zero byte.
/// @return whether it is gone.
bool removeFile(const String& path);
/// Whether the parent directory is there and the entry is not. False for everything else, also
/// where the answer cannot be had.
/// @throws std::range_error "bad conversion" where the path is not UTF-8.
bool isMissing(const String& path);

}  // namespace VelmoraQuavin::internal::platform
