// Element types of blobs and network ports.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace InferenceEngine {

/** An element type: a plain value over the enumeration, to which and from which it converts. */
class Precision {
public:
    enum ePrecision : std::uint8_t {
        UNSPECIFIED = 255,
        MIXED = 0,
        FP32 = 10,
        FP16 = 11,
        Q78 = 20,
        I16 = 30,
        U8 = 40,
        BOOL = 41,
        I8 = 50,
        U16 = 60,
        I32 = 70,
        BIN = 71,
        I64 = 72,
        CUSTOM = 80,
    };

    Precision() noexcept = default;
    Precision(ePrecision value) noexcept : value_(value) {}

    operator ePrecision() const noexcept { return value_; }

    bool operator==(const Precision& other) const noexcept { return value_ == other.value_; }
    bool operator==(ePrecision other) const noexcept { return value_ == other; }
    bool operator!=(const Precision& other) const noexcept { return value_ != other.value_; }
    bool operator!=(ePrecision other) const noexcept { return value_ != other; }

    /**
     * Bytes of one element (of eight, for BIN).
     *
     * @throws details::InferenceEngineException for UNSPECIFIED, MIXED and CUSTOM, which have no
     * size
     */
    std::size_t size() const;

    /** The name as written in the enumeration. */
    const char* name() const noexcept;

    std::uint8_t getPrecVal() const noexcept { return value_; }

    /** Whether elements of this precision are kept in memory as T. */
    template <class T>
    bool hasStorageType() const noexcept {
        switch (value_) {
            case FP32:
                return std::is_same_v<T, float>;
            case FP16:
            case Q78:
                return std::is_same_v<T, std::int16_t> || std::is_same_v<T, std::uint16_t>;
            case I16:
                return std::is_same_v<T, std::int16_t>;
            case U16:
                return std::is_same_v<T, std::uint16_t>;
            case U8:
            case BOOL:
                return std::is_same_v<T, std::uint8_t>;
            case I8:
                return std::is_same_v<T, std::int8_t>;
            case BIN:
                return std::is_same_v<T, std::int8_t> || std::is_same_v<T, std::uint8_t>;
            case I32:
                return std::is_same_v<T, std::int32_t>;
            case I64:
                return std::is_same_v<T, std::int64_t>;
            case UNSPECIFIED:
            case MIXED:
            case CUSTOM:
                return false;
        }
        return false;
    }

private:
    ePrecision value_ = UNSPECIFIED;
};

/** PrecisionTrait<P>::value_type is the C++ type of one element of precision P. */
template <Precision::ePrecision P>
struct PrecisionTrait;

template <>
struct PrecisionTrait<Precision::FP32> {
    using value_type = float;
};
template <>
struct PrecisionTrait<Precision::FP16> {
    using value_type = std::int16_t;
};
template <>
struct PrecisionTrait<Precision::Q78> {
    using value_type = std::uint16_t;
};
template <>
struct PrecisionTrait<Precision::I16> {
    using value_type = std::int16_t;
};
template <>
struct PrecisionTrait<Precision::U16> {
    using value_type = std::uint16_t;
};
template <>
struct PrecisionTrait<Precision::U8> {
    using value_type = std::uint8_t;
};
template <>
struct PrecisionTrait<Precision::BOOL> {
    using value_type = std::uint8_t;
};
template <>
struct PrecisionTrait<Precision::I8> {
    using value_type = std::int8_t;
};
template <>
struct PrecisionTrait<Precision::BIN> {
    using value_type = std::int8_t;
};
template <>
struct PrecisionTrait<Precision::I32> {
    using value_type = std::int32_t;
};
template <>
struct PrecisionTrait<Precision::I64> {
    using value_type = std::int64_t;
};

}  // namespace InferenceEngine
