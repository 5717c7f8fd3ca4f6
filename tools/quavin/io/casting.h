#pragma once

#include <string>

#include "tools/quavin/io/npy.h"

namespace quavin_tool {

/// Writes the elements of an array as another type. Floats are rounded; nothing else changes.
/// @param path of the array's file, for messages.
/// @param destination memory for as many elements of that type.
/// @throws InvalidArgumentsException where an element does not fit: beyond the type's range, and
///         for whole numbers a fraction, NaN or infinity.
void castElements(const NpyArray& array, const std::string& path, VelmoraQuavin::DataType type,
                  unsigned char* destination);

}  // namespace quavin_tool
