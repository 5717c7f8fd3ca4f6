#include "tools/quavin/io/casting.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

#include "tools/quavin/cli/printing.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::DataType;

struct Half {
    std::uint16_t bits;
};

// Exact: every half fits a double.
double valueOf(Half half) {
    const int sign = (half.bits & 0x8000) != 0 ? -1 : 1;
    const int exponent = half.bits >> 10 & 0x1F;
    const int fraction = half.bits & 0x3FF;
    if (exponent == 0x1F) {
        return fraction != 0 ? std::numeric_limits<double>::quiet_NaN()
                             : sign * std::numeric_limits<double>::infinity();
    }
    return exponent == 0 ? std::ldexp(sign * fraction, -24)
                         : std::ldexp(sign * (fraction + 0x400), exponent - 25);
}

// An int8 that is not mistaken for a character.
struct SmallInteger {
    std::uint8_t bits;
};

std::int16_t valueOf(SmallInteger number) {
    return static_cast<std::int16_t>(number.bits < 0x80 ? number.bits : number.bits - 0x100);
}

template <typename Number>
Number valueOf(Number number) {
    return number;
}

// Why a value cannot be converted to another type; null if it can.
template <typename To, typename From>
const char* problemOf(From value) {
    using Limits = std::numeric_limits<To>;
    if constexpr (std::is_floating_point_v<To>) {
        if constexpr (std::is_floating_point_v<From>) {
            return std::isfinite(value) && std::abs(value) > static_cast<From>(Limits::max())
                       ? "is out of range for"
                       : nullptr;
        }
        return nullptr;
    } else if constexpr (std::is_floating_point_v<From>) {
        if (!std::isfinite(value)) {
            return "is not finite and cannot be converted to";
        }
        if (std::trunc(value) != value) {
            return "has a fraction and cannot be converted to";
        }
        // As double: a float cannot represent the limits of 32 bits.
        const auto wide = static_cast<double>(value);
        return wide < static_cast<double>(Limits::min()) ||
                       wide > static_cast<double>(Limits::max())
                   ? "is out of range for"
                   : nullptr;
    } else if constexpr (std::is_signed_v<From>) {
        const auto wide = static_cast<std::int64_t>(value);
        return wide < Limits::min() || wide > Limits::max() ? "is out of range for" : nullptr;
    } else {
        const auto wide = static_cast<std::uint64_t>(value);
        return wide > static_cast<std::uint64_t>(Limits::max()) ? "is out of range for" : nullptr;
    }
}

template <typename From, typename To>
void castAll(const NpyArray& array, const std::string& path, DataType type,
             unsigned char* destination) {
    const auto count = static_cast<std::uint64_t>(array.shape.size());
    for (std::uint64_t i = 0; i < count; ++i) {
        std::array<unsigned char, sizeof(From)> bytes{};
        std::memcpy(bytes.data(), array.elements() + i * sizeof(From), sizeof(From));
        if (array.isBigEndian) {
            std::reverse(bytes.begin(), bytes.end());
        }
        From element{};
        std::memcpy(&element, bytes.data(), sizeof element);
        const auto value = valueOf(element);
        if (const char* const problem = problemOf<To>(value); problem != nullptr) {
            throw VelmoraQuavin::InvalidArgumentsException("Element " + std::to_string(i) + " of " +
                                                           path + " " + problem + " " +
                                                           typeName(type));
        }
        const auto cast = static_cast<To>(value);
        std::memcpy(destination + i * sizeof cast, &cast, sizeof cast);
    }
}

template <typename To>
void castTo(const NpyArray& array, const std::string& path, DataType type,
            unsigned char* destination) {
    switch (array.type) {
        case DataType::BOOL:
        case DataType::UINT8:
            return castAll<std::uint8_t, To>(array, path, type, destination);
        case DataType::INT8:
            return castAll<SmallInteger, To>(array, path, type, destination);
        case DataType::INT16:
            return castAll<std::int16_t, To>(array, path, type, destination);
        case DataType::UINT16:
            return castAll<std::uint16_t, To>(array, path, type, destination);
        case DataType::INT32:
            return castAll<std::int32_t, To>(array, path, type, destination);
        case DataType::UINT32:
            return castAll<std::uint32_t, To>(array, path, type, destination);
        case DataType::INT64:
            return castAll<std::int64_t, To>(array, path, type, destination);
        case DataType::UINT64:
            return castAll<std::uint64_t, To>(array, path, type, destination);
        case DataType::FLOAT16:
            return castAll<Half, To>(array, path, type, destination);
        case DataType::FLOAT:
            return castAll<float, To>(array, path, type, destination);
        default:
            return castAll<double, To>(array, path, type, destination);
    }
}

}  // namespace

bool isInputType(DataType type) {
    return type == DataType::FLOAT || type == DataType::INT8 || type == DataType::INT16 ||
           type == DataType::INT32;
}

void castElements(const NpyArray& array, const std::string& path, DataType type,
                  unsigned char* destination) {
    switch (type) {
        case DataType::INT8:
            return castTo<std::int8_t>(array, path, type, destination);
        case DataType::INT16:
            return castTo<std::int16_t>(array, path, type, destination);
        case DataType::INT32:
            return castTo<std::int32_t>(array, path, type, destination);
        default:
            return castTo<float>(array, path, type, destination);
    }
}

}  // namespace quavin_tool
