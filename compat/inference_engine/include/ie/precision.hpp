// Element types of blobs and network ports.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace InferenceEngine {

/** An element type: a value class that converts to and from its enumeration. */
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

    /** The name as spelled in the enumeration. */
    const char* name() const noexcept;

    std::uint8_t getPrecVal() const noexcept { return value_; }

    /** Whether elements of this precision are stored as T. */
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

}  // namespace InferenceEngine
