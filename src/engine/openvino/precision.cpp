#include "engine/openvino/precision.h"

#include "quavin/status.h"

namespace VelmoraQuavin::internal {

using InferenceEngine::Precision;

DataType toDataType(const Precision& precision) {
    // Only precisions with a tensor type are listed; the rest are deliberately undefined.
    if (precision == Precision::FP32) {
        return DataType::FLOAT;
    }
    if (precision == Precision::I16) {
        return DataType::INT16;
    }
    if (precision == Precision::I8) {
        return DataType::INT8;
    }
    if (precision == Precision::I32) {
        return DataType::INT32;
    }
    return DataType::UNDEFINED;
}

Precision toPrecision(DataType type) {
    switch (type) {
        case DataType::BOOL:
            throw InvalidTensorDataTypeException("Bool type not supported in openvino engine");
        case DataType::DOUBLE:
            throw InvalidTensorDataTypeException("Double not supported in openvino engine");
        case DataType::INT8:
            return Precision::I8;
        case DataType::INT16:
            return Precision::I16;
        case DataType::INT32:
            return Precision::I32;
        case DataType::FLOAT:
            return Precision::FP32;
        default:
            return Precision::UNSPECIFIED;
    }
}

TensorShape shapeOf(const InferenceEngine::TensorDesc& description) {
    const InferenceEngine::SizeVector& extents = description.getDims();
    return std::vector<int64>(extents.begin(), extents.end());
}

}  // namespace VelmoraQuavin::internal
