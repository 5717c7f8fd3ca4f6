#include "tensor/tensor_texts.h"

#include "text/vocabulary.h"

namespace VelmoraQuavin::internal {

std::string dataTypeName(DataType type) {
    return std::string(wordFor(kDataTypes, type, "none"));
}

std::string shapeText(const TensorShape& shape) {
    std::string text;
    for (const int64 extent : shape.shapeVector()) {
        text += (text.empty() ? "" : ", ") + std::to_string(extent);
    }
    return "[" + text + "]";
}

}  // namespace VelmoraQuavin::internal
