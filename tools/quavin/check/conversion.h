#pragma once

#include <string>
#include <string_view>

namespace quavin_tool {

/// @throws InvalidArgumentsException for a model in a format other than OpenVINO IR, saying how to
///         convert it.
void requireConverted(const std::string& network);

/// How to convert a model again with fixed input dimensions; empty if the network's text shows no
/// input without them.
std::string fixedDimensionsAdvice(std::string_view networkText);

}  // namespace quavin_tool
