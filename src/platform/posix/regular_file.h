#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>

#include "platform/posix/file_descriptor.h"
#include "quavin/text.h"

namespace VelmoraQuavin::internal::platform {

/// A regular file opened for reading.
struct RegularFile {
    FileDescriptor descriptor;
    struct stat attributes;
};

/// Opens a file for reading. Anything but a regular file is refused, without blocking.
/// @param problem receives a human-readable reason on failure.
/// @throws std::range_error "bad conversion" if the path is not UTF-8.
std::optional<RegularFile> openRegularFile(const String& path, std::string& problem);

}  // namespace VelmoraQuavin::internal::platform
