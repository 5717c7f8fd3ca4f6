#pragma once

#include <string>
#include <string_view>

namespace quavin_tool {

/// A manifest whose components of the kind "file" have become secured ones. Everything else stays.
/// @param manifest the text of one that the library reads.
std::string withSecuredFiles(std::string_view manifest);

}  // namespace quavin_tool
