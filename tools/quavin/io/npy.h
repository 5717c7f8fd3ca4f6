#pragma once

#include <string>
#include <vector>

#include "quavin/tensor.h"
#include "tools/quavin/io/wiped_bytes.h"

namespace quavin_tool {

/// Whether elements of a type other than the input's are refused or converted.
enum class Casts { kRefused, kDone };

/// An array as saved by NumPy, in C order.
struct NpyArray {
    VelmoraQuavin::DataType type = VelmoraQuavin::DataType::UNDEFINED;
    bool isBigEndian = false;
    VelmoraQuavin::TensorShape shape;
    WipedBytes file;
    std::uint64_t offset = 0;  ///< Where the elements begin in the file.

    const unsigned char* elements() const { return file.data() + offset; }
};

/// Parses the content of a ".npy" file of numbers or booleans.
/// @param path the file's path, for messages.
/// @param casts if refused, only little-endian numbers of types that the engine takes are allowed.
/// @throws InvalidArgumentsException saying what is wrong and what to do.
NpyArray parseNpy(WipedBytes file, const std::string& path, Casts casts);

/// The content of a ".npy" file.
/// @param elements must match the type and shape.
std::string npyText(VelmoraQuavin::DataType type, const VelmoraQuavin::TensorShape& shape,
                    std::string_view elements);

}  // namespace quavin_tool
