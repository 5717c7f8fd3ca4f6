#include "package/manifest/manifest_feature.h"

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

#include "package/json/json_access.h"
#include "text/vocabulary.h"

namespace VelmoraQuavin::internal {
namespace {

// Stores the meaning of the member `key`; leaves `target` alone if it is not a known word.
template <typename Value, std::size_t count>
void readWord(const JsonValue& json, const char* key, const std::array<Word<Value>, count>& words,
              Value& target) {
    String text;
    if (!readString(json, key, text)) {
        return;
    }
    if (const Value* const meaning = meaningOf(words, text.view())) {
        target = *meaning;
    }
}

// A list with anything but integers in it does not count as a shape.
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
        readWord(*block, "dataType", kDataTypes, dataType);
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
        readWord(*block, "pixelType", kPixelTypes, image.pixelType);
        // Models are always fed blue first, whatever their packages say.
        if (image.pixelType == QuavinPixelType::RGBA) {
            image.pixelType = QuavinPixelType::BGRA;
        }
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
    readWord(json, "featureType", kFeatureTypes, type);

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
