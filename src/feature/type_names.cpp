#include "quavin/feature.h"

namespace VelmoraQuavin {

String GetQuavinFeatureTypeName(QuavinFeatureType type) {
    switch (type) {
        case QuavinFeatureType::BOOL:
            return "bool";
        case QuavinFeatureType::UINT8:
            return "uint8";
        case QuavinFeatureType::INT64:
            return "int64";
        case QuavinFeatureType::DOUBLE:
            return "double";
        case QuavinFeatureType::STRING:
            return "string";
        case QuavinFeatureType::TENSOR:
            return "tensor";
        case QuavinFeatureType::IMAGE:
            return "image";
    }
    return "unknown";
}

String GetQuavinPixelType(QuavinPixelType type) {
    switch (type) {
        case QuavinPixelType::ONE:
            return "one";
        case QuavinPixelType::BGR:
            return "BGR";
        case QuavinPixelType::RGB:
            return "RGB";
        case QuavinPixelType::RGBA:
            return "RGBA";
        case QuavinPixelType::BGRA:
            return "BGRA";
    }
    return "unknown";
}

}  // namespace VelmoraQuavin
