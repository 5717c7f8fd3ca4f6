#pragma once

#include <string>
#include <string_view>

namespace quavin_tool {

/// @throws InvalidArgumentsException for a model in another format than OpenVINO IR, saying how to
///         convert it.
void requireConverted(const std::string& network);

/// How to convert a model again so that the dimensions of its inputs are fixed; empty where the
/// network's text shows no input of others.
std::string fixedDimensionsAdvice(std::string_view networkText);

}  // namespace quavin_tool
