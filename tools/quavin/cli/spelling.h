#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quavin_tool {

/// The name that somebody probably meant: one that differs in a letter or two, or begins with what
/// was typed or the other way round. Letter case does not count.
/// @return empty where none is close.
std::string closestName(std::string_view typed, const std::vector<std::string>& names);

}  // namespace quavin_tool
