#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "quavin/text.h"

namespace quavin_tool {

/// What the header of a ".npy" file says. The type lies in the header's text.
struct NpyHeader {
    std::string_view type;
    bool fortranOrder = false;
    std::vector<VelmoraQuavin::int64> shape;
};

/// Reads the header's text, which is a Python dictionary of three members with plain values.
/// @return nothing for anything else, a type of several fields for one.
std::optional<NpyHeader> parseNpyHeader(std::string_view text);

}  // namespace quavin_tool
