#pragma once

#include <string>
#include <vector>

#include "files.h"
#include "quavin/tensor.h"

namespace quavin_tool {

/// An array as NumPy saves it: little-endian, in C order, of a type that the engine takes.
struct NpyArray {
    VelmoraQuavin::DataType type = VelmoraQuavin::DataType::UNDEFINED;
    VelmoraQuavin::TensorShape shape;
    Bytes file;
    std::uint64_t offset = 0;  ///< Where the elements begin in the file.

    const unsigned char* elements() const { return file.data() + offset; }
};

/// Reads a ".npy" file.
/// @throws InvalidArgumentsException saying what is wrong with it and what to do.
NpyArray readNpy(const std::string& path);

/// The content of a ".npy" file.
/// @param elements as many as the shape has.
std::string npyText(VelmoraQuavin::DataType type, const VelmoraQuavin::TensorShape& shape,
                    std::string_view elements);

}  // namespace quavin_tool
