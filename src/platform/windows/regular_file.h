#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>

#include "platform/windows/file_handle.h"
#include "quavin/text.h"

namespace VelmoraQuavin::internal::platform {

/// A regular file opened for reading.
struct RegularFile {
    FileHandle handle;
    std::uint64_t size;
};

/// Opens a file for reading. Anything but a regular file is refused: directories, devices, pipes.
/// @param sharing what others may do with the file in the meantime: FILE_SHARE_READ and so on.
/// @param problem receives a human-readable reason on failure.
/// @throws std::range_error "bad conversion" if the path is not UTF-8.
std::optional<RegularFile> openRegularFile(const String& path, DWORD sharing, std::string& problem);

}  // namespace VelmoraQuavin::internal::platform
