#pragma once

#include <string>

#include "tools/quavin/io/npy.h"

namespace quavin_tool {

/// Whether predictions accept inputs of an element type.
bool isInputType(VelmoraQuavin::DataType type);

/// Converts the elements of an array to another type. Floats are rounded; other values are exact.
/// @param path the path of the array's file, for messages.
/// @param destination room for all elements in that type.
/// @throws InvalidArgumentsException if an element does not fit: out of the type's range or, for
///         integers, a fraction, NaN or infinity.
void castElements(const NpyArray& array, const std::string& path, VelmoraQuavin::DataType type,
                  unsigned char* destination);

}  // namespace quavin_tool
