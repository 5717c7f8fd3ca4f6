#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "quavin/feature.h"
#include "quavin/metadata.h"
#include "quavin/tensor.h"

namespace VelmoraQuavin::internal {

/// A word of the manifest and its meaning.
template <typename Value>
struct Word {
    std::string_view word;
    Value value;
};

/// "dataType".
inline constexpr std::array<Word<DataType>, 12> kDataTypes = {{
    {"int8", DataType::INT8},
    {"uint8", DataType::UINT8},
    {"int16", DataType::INT16},
    {"uint16", DataType::UINT16},
    {"int32", DataType::INT32},
    {"uint32", DataType::UINT32},
    {"int64", DataType::INT64},
    {"uint64", DataType::UINT64},
    {"float", DataType::FLOAT},
    {"double", DataType::DOUBLE},
    {"float16", DataType::FLOAT16},
    {"bool", DataType::BOOL},
}};

/// "featureType", and the name of a feature's block.
inline constexpr std::array<Word<QuavinFeatureType>, 7> kFeatureTypes = {{
    {"bool", QuavinFeatureType::BOOL},
    {"uint8", QuavinFeatureType::UINT8},
    {"int64", QuavinFeatureType::INT64},
    {"double", QuavinFeatureType::DOUBLE},
    {"string", QuavinFeatureType::STRING},
    {"tensor", QuavinFeatureType::TENSOR},
    {"image", QuavinFeatureType::IMAGE},
}};

/// "pixelType".
inline constexpr std::array<Word<QuavinPixelType>, 5> kPixelTypes = {{
    {"one", QuavinPixelType::ONE},
    {"BGR", QuavinPixelType::BGR},
    {"RGB", QuavinPixelType::RGB},
    {"RGBA", QuavinPixelType::RGBA},
    {"BGRA", QuavinPixelType::BGRA},
}};

/// Members of "targets", in the order in which they are read.
inline constexpr std::array<Word<QuavinModelType>, 5> kEngines = {{
    {"WinML", QuavinModelType::WinML},
    {"CoreML", QuavinModelType::CoreML},
    {"Openvino", QuavinModelType::Openvino},
    {"TensorflowLite", QuavinModelType::TensorflowLite},
    {"MockML", QuavinModelType::MockML},
}};

/// The word for a value; `otherwise` if there is none.
template <typename Value, std::size_t count>
constexpr std::string_view wordFor(const std::array<Word<Value>, count>& words, Value value,
                                   std::string_view otherwise) {
    for (const Word<Value>& candidate : words) {
        if (candidate.value == value) {
            return candidate.word;
        }
    }
    return otherwise;
}

/// The meaning of a word; null if it is not in the table.
template <typename Value, std::size_t count>
constexpr const Value* meaningOf(const std::array<Word<Value>, count>& words,
                                 std::string_view word) {
    for (const Word<Value>& candidate : words) {
        if (candidate.word == word) {
            return &candidate.value;
        }
    }
    return nullptr;
}

}  // namespace VelmoraQuavin::internal
