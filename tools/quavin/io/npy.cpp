#include "tools/quavin/io/npy.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <optional>
#include <utility>

#include "quavin/status.h"
#include "tools/quavin/cli/printing.h"
#include "tools/quavin/io/casting.h"
#include "tools/quavin/io/npy_header.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::DataType;
using VelmoraQuavin::int64;
using VelmoraQuavin::TensorShape;

constexpr std::string_view kMagic("\x93NUMPY", 6);
// Magic, two bytes of version, and the length of the header in two bytes (version 1) or four.
constexpr std::size_t kVersionOffset = 6;
constexpr std::size_t kLengthOffset = 8;
// The elements are aligned to this.
constexpr std::size_t kAlignment = 64;

// NumPy's type codes, without byte order.
struct ElementType {
    std::string_view code;
    DataType type;
    int64 size;
};
constexpr ElementType kTypes[] = {
    {"f4", DataType::FLOAT, 4},  {"i1", DataType::INT8, 1},    {"i2", DataType::INT16, 2},
    {"i4", DataType::INT32, 4},  {"i8", DataType::INT64, 8},   {"u1", DataType::UINT8, 1},
    {"u2", DataType::UINT16, 2}, {"u4", DataType::UINT32, 4},  {"u8", DataType::UINT64, 8},
    {"b1", DataType::BOOL, 1},   {"f2", DataType::FLOAT16, 2}, {"f8", DataType::DOUBLE, 8}};

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

const ElementType& elementType(const std::string& path, std::string_view code, Casts casts) {
    const auto* const found =
        std::find_if(std::begin(kTypes), std::end(kTypes), [code](const ElementType& candidate) {
            const std::string_view order = code.substr(0, 1);
            const bool isOrder = candidate.size == 1 ? order == "|" : order == "<" || order == ">";
            return isOrder && code.substr(1) == candidate.code;
        });
    const bool isKnown = found != std::end(kTypes);
    const std::string cast = isKnown ? ", or pass --cast" : "";
    if (casts == Casts::kRefused && code.substr(0, 1) == ">") {
        refuse(path, "is big-endian (" + printable(code) +
                         "); convert it with array.astype(array.dtype.newbyteorder('<'))" + cast);
    }
    if (!isKnown || (casts == Casts::kRefused && !isInputType(found->type))) {
        refuse(path, "holds elements of type '" + printable(code) +
                         "'; the engine takes float32, int8, int16 and int32: convert it with "
                         "array.astype(...)" +
                         cast);
    }
    return *found;
}

// The size of the elements in bytes; nothing on overflow.
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

NpyArray parseNpy(WipedBytes file, const std::string& path, Casts casts) {
    NpyArray array;
    array.file = std::move(file);
    const std::string_view text = array.file.text();
    if (text.substr(0, kMagic.size()) != kMagic || text.size() < kLengthOffset + 2) {
        refuse(path, "is not a .npy file; pass --raw for raw elements");
    }
    const auto version = static_cast<unsigned char>(text[kVersionOffset]);
    const std::size_t lengthBytes = version == 1 ? 2 : 4;
    const std::size_t begin = kLengthOffset + lengthBytes;
    if (version < 1 || version > 3 || text.size() < begin) {
        refuse(path, "has an unknown .npy version");
    }
    const std::size_t length = numberAt(text, kLengthOffset, lengthBytes);
    if (length > text.size() - begin) {
        refuse(path, "ends within its header");
    }
    const std::optional<NpyHeader> header = parseNpyHeader(text.substr(begin, length));
    if (!header.has_value()) {
        refuse(path, "has a malformed .npy header, or a type with several fields");
    }
    const ElementType& type = elementType(path, header->type, casts);
    if (header->fortranOrder) {
        refuse(path, "is in Fortran order; save numpy.ascontiguousarray(array) instead");
    }
    array.offset = begin + length;
    const std::uint64_t left = text.size() - array.offset;
    const std::optional<std::uint64_t> needed = byteCount(header->shape, type.size);
    if (needed != left) {
        refuse(path, "holds " + std::to_string(left) + " bytes of elements, which does not match " +
                         typeName(type.type) + " of shape " +
                         shapeText(TensorShape(header->shape)));
    }
    array.type = type.type;
    array.isBigEndian = header->type.front() == '>';
    array.shape = TensorShape(header->shape);
    return array;
}

std::string npyText(DataType type, const TensorShape& shape, std::string_view elements) {
    std::string code;
    for (const ElementType& candidate : kTypes) {
        if (candidate.type == type) {
            code = (candidate.size == 1 ? "|" : "<") + std::string(candidate.code);
        }
    }
    std::string dimensions;
    for (const int64 extent : shape.shapeVector()) {
        dimensions += std::to_string(extent) + ", ";
    }
    // A tuple with one element keeps its comma.
    if (shape.dimension() > 1) {
        dimensions.resize(dimensions.size() - 2);
    } else if (shape.dimension() == 1) {
        dimensions.pop_back();
    }
    std::string header =
        "{'descr': '" + code + "', 'fortran_order': False, 'shape': (" + dimensions + "), }";
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
