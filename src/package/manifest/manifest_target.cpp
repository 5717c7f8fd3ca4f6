#include "package/manifest/manifest_target.h"

#include <vector>

#include "package/json/json_access.h"
#include "package/manifest/manifest_feature.h"

namespace VelmoraQuavin::internal {
namespace {

ModelComponent readComponent(const JsonValue& json) {
    ModelComponent component;
    readString(json, "name", component.name);
    readString(json, "path", component.path);
    // "encryption" only informs people and tools: every component starts with an all-zero key, and
    // the host supplies the real one.
    return component;
}

void readFeatures(const JsonValue& json, const char* key,
                  std::vector<ModelFeatureDescriptor>& features, std::vector<String>& names) {
    const JsonValue* list = findArray(json, key);
    if (list == nullptr) {
        return;
    }
    for (const JsonValue& element : list->GetArray()) {
        features.push_back(readFeatureDescriptor(element));
        names.push_back(features.back().name());
    }
}

}  // namespace

ModelTarget readTarget(const JsonValue& json) {
    ModelTarget target;
    if (const JsonValue* components = findArray(json, "components")) {
        for (const JsonValue& element : components->GetArray()) {
            target.components.push_back(readComponent(element));
        }
    }
    readFeatures(json, "inputs", target.inputs, target.inputNames);
    readFeatures(json, "outputs", target.outputs, target.outputNames);
    return target;
}

}  // namespace VelmoraQuavin::internal
