#pragma once

#include <string>
#include <string_view>

namespace quavin_tool {

/// @throws InvalidArgumentsException for a model in a format other than OpenVINO IR, saying how to
///         make a package of it.
void requireConverted(const std::string& network);

/// How to make a package with fixed input dimensions; empty if the network's text shows no input
/// without them.
std::string fixedDimensionsAdvice(const std::string& network, std::string_view networkText);

}  // namespace quavin_tool
