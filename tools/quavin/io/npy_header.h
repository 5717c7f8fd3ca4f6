#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "quavin/text.h"

namespace quavin_tool {

/// The header of a ".npy" file. The type points into the header's text.
struct NpyHeader {
    std::string_view type;
    bool fortranOrder = false;
    std::vector<VelmoraQuavin::int64> shape;
};

/// Parses the header, a Python dictionary of three members with plain values.
/// @return nothing for anything else, such as a type with several fields.
std::optional<NpyHeader> parseNpyHeader(std::string_view text);

}  // namespace quavin_tool
