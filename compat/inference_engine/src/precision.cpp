#include "ie/precision.hpp"

#include <string>

#include "ie/exception.hpp"

namespace InferenceEngine {

std::size_t Precision::size() const {
    switch (value_) {
        case U8:
        case BOOL:
        case I8:
        case BIN:
            return 1;
        case FP16:
        case Q78:
        case I16:
        case U16:
            return 2;
        case FP32:
        case I32:
            return 4;
        case I64:
            return 8;
        case UNSPECIFIED:
        case MIXED:
        case CUSTOM:
            break;
    }
    throw details::InferenceEngineException(std::string("Precision ") + name() + " has no size");
}

const char* Precision::name() const noexcept {
    switch (value_) {
        case UNSPECIFIED:
            return "UNSPECIFIED";
        case MIXED:
            return "MIXED";
        case FP32:
            return "FP32";
        case FP16:
            return "FP16";
        case Q78:
            return "Q78";
        case I16:
            return "I16";
        case U8:
            return "U8";
        case BOOL:
            return "BOOL";
        case I8:
            return "I8";
        case U16:
            return "U16";
        case I32:
            return "I32";
        case BIN:
            return "BIN";
        case I64:
            return "I64";
        case CUSTOM:
            return "CUSTOM";
    }
    return "UNSPECIFIED";
}

}  // namespace InferenceEngine
