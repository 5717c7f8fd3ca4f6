#pragma once

#include <fstream>

#include "quavin/text.h"

namespace VelmoraQuavin::internal::platform {

/// Opens a file through the system's widest interface; others may read and write it meanwhile.
/// @param path read up to its first zero byte.
/// @return the stream, also where opening failed.
/// @throws std::range_error "bad conversion" where the path is not UTF-8.
std::fstream openFile(const String& path, std::ios::openmode mode);
/// openFile() for writing alone: an emptied file.
std::ofstream openFileForWriting(const String& path, std::ios::openmode mode);

}  // namespace VelmoraQuavin::internal::platform
