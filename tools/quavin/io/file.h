#pragma once

#include <string>
#include <string_view>

#include "quavin/status.h"
#include "tools/quavin/io/wiped_bytes.h"

namespace quavin_tool {

/// Reads a whole file.
/// @throws FileException naming the file.
WipedBytes readFile(const std::string& path);
/// Writes a whole file. An existing file keeps its content until the new one is complete, and stays
/// if that fails.
/// @throws FileException naming the file.
void writeFile(const std::string& path, std::string_view content);
/// Writes a new file, which must not exist yet.
void writeNewFile(const std::string& path, std::string_view content);
/// As above, for a file that only its owner may read.
void writePrivateFile(const std::string& path, std::string_view content);

}  // namespace quavin_tool
