#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/quavin/package/package.h"

namespace quavin_tool {

/// An input or output as the text of a network (OpenVINO IR) has it.
struct TextPort {
    std::vector<std::string> names;  ///< What an engine may know it by, the likeliest first.
    std::vector<std::string> shape;  ///< Of inputs: "3"; "-1", "?", "1..8" where it is not fixed.

    bool isFixed() const;
};

/// What the text of a network says of inputs and outputs, in its own order.
struct TextPorts {
    std::vector<TextPort> inputs;
    std::vector<TextPort> outputs;
};

/// Reads the text of a network; of a text that is none it makes what it can.
TextPorts readTextPorts(std::string_view text);

/// Puts descriptors that are in the order of their names into the order of the network's text.
/// Leaves them as they are where the text does not tell the place of each.
void sortAsInText(const std::vector<TextPort>& ports, Descriptors& descriptors);

}  // namespace quavin_tool
