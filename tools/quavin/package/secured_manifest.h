#pragma once

#include <string>
#include <string_view>

namespace quavin_tool {

/// Turns a manifest's components of the kind "file" into secured files. Everything else stays.
/// @param manifest the text of a manifest that the library can read.
std::string withSecuredFiles(std::string_view manifest);

}  // namespace quavin_tool
