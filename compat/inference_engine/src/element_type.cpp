#include "element_type.hpp"

namespace InferenceEngine::runtime {

const char* nameOf(Direction direction) noexcept {
    return direction == Direction::Input ? "Input" : "Output";
}

Precision shownPrecision(ov_element_type_e type, Direction direction) noexcept {
    const bool input = direction == Direction::Input;
    switch (type) {
        case ::F32:
        case ::F16:
        case ::BF16:
        case ::F64:
            return Precision::FP32;
        case ::I32:
        case ::U32:
        case ::I64:
        case ::U64:
            return Precision::I32;
        case ::I8:
            return input ? Precision::I8 : Precision::FP32;
        case ::U8:
        case ::BOOLEAN:
            return input ? Precision::U8 : Precision::FP32;
        case ::I16:
            return input ? Precision::I16 : Precision::FP32;
        case ::U16:
            return input ? Precision::U16 : Precision::FP32;
        default:
            return Precision::UNSPECIFIED;
    }
}

ov_element_type_e elementTypeOf(Precision precision) noexcept {
    switch (precision) {
        case Precision::FP32:
            return ::F32;
        case Precision::I32:
            return ::I32;
        case Precision::I16:
            return ::I16;
        case Precision::U16:
            return ::U16;
        case Precision::I8:
            return ::I8;
        case Precision::U8:
            return ::U8;
        default:
            return ::DYNAMIC;
    }
}

bool holdsAllOf(Precision wide, Precision narrow) noexcept {
    if (wide == narrow) {
        return true;
    }
    const bool byte = narrow == Precision::U8;
    const bool small = byte || narrow == Precision::I8;
    switch (wide) {
        case Precision::FP32:
        case Precision::I32:
            return small || narrow == Precision::I16 || narrow == Precision::U16;
        case Precision::I16:
            return small;
        case Precision::U16:
            return byte;
        default:
            return false;
    }
}

}  // namespace InferenceEngine::runtime
