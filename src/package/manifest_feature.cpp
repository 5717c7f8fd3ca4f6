#include "package/manifest_feature.h"

#include <array>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include "package/json_access.h"

namespace VelmoraQuavin::internal {
namespace {

template <typename Value>
struct Named {
    const char* name;
    Value value;
};

constexpr std::array<Named<QuavinFeatureType>, 7> kFeatureTypes = {{
    {"bool", QuavinFeatureType::BOOL},
    {"uint8", QuavinFeatureType::UINT8},
    {"int64", QuavinFeatureType::INT64},
    {"double", QuavinFeatureType::DOUBLE},
    {"string", QuavinFeatureType::STRING},
    {"tensor", QuavinFeatureType::TENSOR},
    {"image", QuavinFeatureType::IMAGE},
}};

constexpr std::array<Named<DataType>, 12> kDataTypes = {{
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

constexpr std::array<Named<QuavinPixelType>, 5> kPixelTypes = {{
    {"one", QuavinPixelType::ONE},
    {"BGR", QuavinPixelType::BGR},
    {"RGB", QuavinPixelType::RGB},
    {"RGBA", QuavinPixelType::BGRA},  // models are fed blue first whatever their packages say
    {"BGRA", QuavinPixelType::BGRA},
}};

// Stores the value that the member `key` names; leaves `target` where it names none.
template <typename Value, std::size_t count>
void readNamed(const JsonValue& json, const char* key, const std::array<Named<Value>, count>& names,
               Value& target) {
    String text;
    if (!readString(json, key, text)) {
        return;
    }
    for (const Named<Value>& candidate : names) {
        if (text == candidate.name) {
            target = candidate.value;
            return;
        }
    }
}

// A list with anything but whole numbers in it is no shape at all.
std::vector<int64> readShape(const JsonValue& json) {
    std::vector<int64> dimensions;
    const JsonValue* shape = findArray(json, "shape");
    if (shape == nullptr) {
        return dimensions;
    }
    dimensions.reserve(shape->Size());
    for (const JsonValue& extent : shape->GetArray()) {
        if (!extent.IsInt64()) {
            return {};
        }
        dimensions.push_back(extent.GetInt64());
    }
    return dimensions;
}

TensorDescriptor readTensorDescriptor(const JsonValue& json, QuavinFeatureType type,
                                      const String& name) {
    TensorShape shape;
    auto dataType = DataType::UNDEFINED;
    const String blockKey = GetQuavinFeatureTypeName(type);
    const JsonValue* block = findObject(json, blockKey.str().c_str());
    if (block != nullptr) {
        if (type == QuavinFeatureType::TENSOR) {
            shape = readShape(*block);
        }
        readNamed(*block, "dataType", kDataTypes, dataType);
    }
    TensorDescriptor unnamed(shape, dataType);
    return {name, shape, unnamed.variableShape(), dataType};
}

ImageDescriptor readImageDescriptor(const JsonValue& json) {
    ImageDescriptor image;
    const JsonValue* block = findObject(json, "image");
    if (block != nullptr) {
        readInt(*block, "height", image.height);
        readInt(*block, "width", image.width);
        readNamed(*block, "pixelType", kPixelTypes, image.pixelType);
    }
    return image;
}

}  // namespace

ModelFeatureDescriptor readFeatureDescriptor(const JsonValue& json) {
    const ModelFeatureDescriptor defaults;
    String name;
    String description;
    readString(json, "name", name);
    readString(json, "description", description);
    const JsonValue* requiredFlag = findMember(json, "required");
    const bool required = requiredFlag != nullptr && requiredFlag->IsBool()
                              ? requiredFlag->GetBool()
                              : defaults.required();
    QuavinFeatureType type = defaults.type();
    readNamed(json, "featureType", kFeatureTypes, type);

    ImageDescriptor image;
    TensorDescriptor tensor;
    if (type == QuavinFeatureType::IMAGE) {
        image = readImageDescriptor(json);
    } else if (type != defaults.type()) {
        tensor = readTensorDescriptor(json, type, name);
    }
    return {type, required, name, description, std::move(tensor), image};
}

}  // namespace VelmoraQuavin::internal
