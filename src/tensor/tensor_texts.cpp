#include "tensor/tensor_texts.h"

namespace VelmoraQuavin::internal {

std::string dataTypeName(DataType type) {
    switch (type) {
        case DataType::BOOL:
            return "bool";
        case DataType::INT8:
            return "int8";
        case DataType::UINT8:
            return "uint8";
        case DataType::INT16:
            return "int16";
        case DataType::UINT16:
            return "uint16";
        case DataType::INT32:
            return "int32";
        case DataType::UINT32:
            return "uint32";
        case DataType::INT64:
            return "int64";
        case DataType::UINT64:
            return "uint64";
        case DataType::FLOAT16:
            return "float16";
        case DataType::FLOAT:
            return "float";
        case DataType::DOUBLE:
            return "double";
        default:
            return "none";
    }
}

std::string shapeText(const TensorShape& shape) {
    std::string text;
    for (const int64 extent : shape.shapeVector()) {
        text += (text.empty() ? "" : ", ") + std::to_string(extent);
    }
    return "[" + text + "]";
}

}  // namespace VelmoraQuavin::internal
