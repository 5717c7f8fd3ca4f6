#pragma once

#include <string>
#include <string_view>

#include "quavin/status.h"
#include "tools/quavin/io/wiped_bytes.h"

namespace quavin_tool {

/// Reads a whole file.
/// @throws FileException naming it.
WipedBytes readFile(const std::string& path);
/// Writes a whole file. One that is there keeps its content until its successor is whole, and stays
/// where that fails.
/// @throws FileException naming it.
void writeFile(const std::string& path, std::string_view content);
/// Writes a new file; nothing may be there yet.
void writeNewFile(const std::string& path, std::string_view content);
/// The same for a file that its owner alone may read.
void writePrivateFile(const std::string& path, std::string_view content);

}  // namespace quavin_tool
