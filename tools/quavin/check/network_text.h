#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/quavin/package/package.h"

namespace quavin_tool {

/// An input or output as declared in the text of a network (OpenVINO IR).
struct TextPort {
    std::vector<std::string> names;  ///< Names that an engine may use, likeliest first.
    std::vector<std::string> shape;  ///< Only of inputs: "3"; "-1", "?", "1..8" if not fixed.

    bool isFixed() const;
};

/// The inputs and outputs in the text of a network, in the text's order.
struct TextPorts {
    std::vector<TextPort> inputs;
    std::vector<TextPort> outputs;
};

/// Reads the text of a network. Does its best with any other text.
TextPorts readTextPorts(std::string_view text);

/// Sorts descriptors, which come ordered by name, into the order of the network's text. Leaves them
/// as they are if the text does not determine the position of each.
void sortAsInText(const std::vector<TextPort>& ports, Descriptors& descriptors);

}  // namespace quavin_tool
