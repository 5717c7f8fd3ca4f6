#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quavin_tool {

/// The name that was probably meant: one that differs in a letter or two, is a prefix of what was
/// typed, or has it as a prefix. Case is ignored.
/// @return empty if no name is close.
std::string closestName(std::string_view typed, const std::vector<std::string>& names);

}  // namespace quavin_tool
