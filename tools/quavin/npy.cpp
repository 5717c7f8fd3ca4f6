#include "npy.h"

#include <limits>
#include <optional>

#include "npy_header.h"
#include "printing.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::DataType;
using VelmoraQuavin::int64;
using VelmoraQuavin::TensorShape;

constexpr std::string_view kMagic("\x93NUMPY", 6);
// Magic, two bytes of version, and the length of the header in two bytes (version 1) or four.
constexpr std::size_t kVersionOffset = 6;
constexpr std::size_t kLengthOffset = 8;
// Elements begin at a multiple of this.
constexpr std::size_t kAlignment = 64;

struct ElementType {
    std::string_view code;
    DataType type;
    int64 size;
};
constexpr ElementType kTypes[] = {{"<f4", DataType::FLOAT, 4},
                                  {"|i1", DataType::INT8, 1},
                                  {"<i2", DataType::INT16, 2},
                                  {"<i4", DataType::INT32, 4}};

// A little-endian number.
std::size_t numberAt(std::string_view text, std::size_t offset, std::size_t bytes) {
    std::size_t number = 0;
    for (std::size_t i = bytes; i > 0; --i) {
        number = number << 8 | static_cast<unsigned char>(text[offset + i - 1]);
    }
    return number;
}

[[noreturn]] void refuse(const std::string& path, const std::string& reason) {
    throw VelmoraQuavin::InvalidArgumentsException(path + " " + reason);
}

const ElementType& elementType(const std::string& path, std::string_view code) {
    for (const ElementType& candidate : kTypes) {
        if (candidate.code == code) {
            return candidate;
        }
    }
    if (!code.empty() && code.front() == '>') {
        refuse(path, "is big-endian (" + printable(code) +
                         "); save it after array.astype(array.dtype.newbyteorder('<'))");
    }
    refuse(path, "holds elements of type '" + printable(code) +
                     "'; the engine takes float32, int8, int16 and int32: convert it with "
                     "array.astype(...)");
}

// Bytes of the elements; nothing where they do not fit a number.
std::optional<std::uint64_t> byteCount(const std::vector<int64>& shape, int64 elementSize) {
    auto bytes = static_cast<std::uint64_t>(elementSize);
    for (const int64 extent : shape) {
        const auto factor = static_cast<std::uint64_t>(extent);
        if (factor != 0 && bytes > std::numeric_limits<std::uint64_t>::max() / factor) {
            return std::nullopt;
        }
        bytes *= factor;
    }
    return bytes;
}

}  // namespace

NpyArray readNpy(const std::string& path) {
    NpyArray array;
    array.file = readFile(path);
    const std::string_view text = array.file.text();
    if (text.substr(0, kMagic.size()) != kMagic || text.size() < kLengthOffset + 2) {
        refuse(path, "is no .npy file; for raw elements give --raw");
    }
    const auto version = static_cast<unsigned char>(text[kVersionOffset]);
    const std::size_t lengthBytes = version == 1 ? 2 : 4;
    const std::size_t begin = kLengthOffset + lengthBytes;
    if (version < 1 || version > 3 || text.size() < begin) {
        refuse(path, "is of a .npy version that is not known");
    }
    const std::size_t length = numberAt(text, kLengthOffset, lengthBytes);
    if (length > text.size() - begin) {
        refuse(path, "is cut off in its header");
    }
    const std::optional<NpyHeader> header = parseNpyHeader(text.substr(begin, length));
    if (!header.has_value()) {
        refuse(path, "has a .npy header that makes no sense, or a type of several fields");
    }
    const ElementType& type = elementType(path, header->type);
    if (header->fortranOrder) {
        refuse(path, "is in Fortran order; save numpy.ascontiguousarray(array)");
    }
    array.offset = begin + length;
    const std::uint64_t left = text.size() - array.offset;
    const std::optional<std::uint64_t> needed = byteCount(header->shape, type.size);
    if (needed != left) {
        refuse(path, "holds " + std::to_string(left) + " bytes of elements, which is not what " +
                         typeName(type.type) + " of shape " +
                         shapeText(TensorShape(header->shape)) + " takes");
    }
    array.type = type.type;
    array.shape = TensorShape(header->shape);
    return array;
}

std::string npyText(DataType type, const TensorShape& shape, std::string_view elements) {
    std::string_view code;
    for (const ElementType& candidate : kTypes) {
        if (candidate.type == type) {
            code = candidate.code;
        }
    }
    std::string dimensions;
    for (const int64 extent : shape.shapeVector()) {
        dimensions += std::to_string(extent) + ", ";
    }
    // A tuple of one keeps its comma.
    if (shape.dimension() > 1) {
        dimensions.resize(dimensions.size() - 2);
    } else if (shape.dimension() == 1) {
        dimensions.pop_back();
    }
    std::string header = "{'descr': '" + std::string(code) +
                         "', 'fortran_order': False, 'shape': (" + dimensions + "), }";
    const std::size_t begin = kLengthOffset + 2;
    const std::size_t whole =
        (begin + header.size() + 1 + kAlignment - 1) / kAlignment * kAlignment;
    header.append(whole - begin - header.size() - 1, ' ');
    header += '\n';

    std::string text(kMagic);
    text += {'\1', '\0', static_cast<char>(header.size() & 0xFF),
             static_cast<char>(header.size() >> 8)};
    return text.append(header).append(elements);
}

}  // namespace quavin_tool
