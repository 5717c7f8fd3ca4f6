#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "platform/mapped_file.h"
#include "platform/posix/file_descriptor.h"

namespace VelmoraQuavin::internal::platform {

/// Maps the beginning of an open file.
/// @param size at least 1.
/// @param problem receives a human-readable reason on failure.
std::optional<MappedFile> mapFile(const FileDescriptor& file, std::size_t size,
                                  std::string& problem);

}  // namespace VelmoraQuavin::internal::platform
