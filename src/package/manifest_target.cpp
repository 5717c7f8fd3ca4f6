#include "package/manifest_target.h"

#include <array>
#include <utility>
#include <vector>

#include "package/json_access.h"
#include "package/manifest_feature.h"

namespace VelmoraQuavin::internal {
namespace {

ModelComponent readComponent(const rapidjson::Value& json) {
    ModelComponent component;
    readString(json, "name", component.name);
    readString(json, "path", component.path);
    if (findMember(json, "encryption") != nullptr) {
        // Only a mark: the key comes from the host.
        component.encryption = Encryption(std::array<unsigned char, 16>{}, PaddingType::NONE);
    }
    return component;
}

void readFeatures(const rapidjson::Value& json, const char* key,
                  std::vector<ModelFeatureDescriptor>& features, std::vector<String>& names) {
    const rapidjson::Value* list = findArray(json, key);
    if (list == nullptr) {
        return;
    }
    for (const rapidjson::Value& element : list->GetArray()) {
        features.push_back(readFeatureDescriptor(element));
        names.push_back(features.back().name());
    }
}

}  // namespace

ModelTarget readTarget(const rapidjson::Value& json) {
    ModelTarget target;
    if (const rapidjson::Value* components = findArray(json, "components")) {
        for (const rapidjson::Value& element : components->GetArray()) {
            target.components.push_back(readComponent(element));
        }
    }
    readFeatures(json, "inputs", target.inputs, target.inputNames);
    readFeatures(json, "outputs", target.outputs, target.outputNames);
    return target;
}

}  // namespace VelmoraQuavin::internal
