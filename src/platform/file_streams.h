#pragma once

#include <fstream>

#include "quavin/text.h"

namespace VelmoraQuavin::internal::platform {

/// Opens a file, through the wide interface on Windows; others may read and write it at the same
/// time.
/// @param path read up to its first zero byte.
/// @return the stream, even if opening failed.
/// @throws std::range_error "bad conversion" if the path is not UTF-8.
std::fstream openFile(const String& path, std::ios::openmode mode);
/// openFile() for writing only; truncates the file.
std::ofstream openFileForWriting(const String& path, std::ios::openmode mode);

}  // namespace VelmoraQuavin::internal::platform
