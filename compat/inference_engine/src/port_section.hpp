// The ports of a compiled network as bytes.
//
// A mark, the version and the number of ports; for each port its direction, precision, position,
// name and dimensions, the last two after their lengths. Numbers have eight bytes in the order of
// the machine, as the runtime's blob can't move to a different one either. Zeros fill up the
// section, so that the blob behind it is aligned if the section is.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "loaded_port.hpp"

namespace InferenceEngine::runtime {

/** @param ports sorted by name, an input before the output of the same name */
std::string portSection(const std::vector<LoadedPort>& ports);

/**
 * Reads the section that some bytes begin with, and removes it from them. The bytes may be hostile.
 *
 * @throws Failure with the status NETWORK_NOT_READ if there is none or anything in it is wrong
 */
std::vector<LoadedPort> takePortSection(std::string_view& bytes);

}  // namespace InferenceEngine::runtime
