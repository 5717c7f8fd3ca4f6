#include "tools/quavin/package/manifest_text.h"

#include "tools/quavin/cli/printing.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::ComponentKind;
using VelmoraQuavin::TensorShape;

void writeFeatures(JsonOutput& json, const char* name, const Descriptors& features) {
    json.beginArray(name);
    for (const VelmoraQuavin::ModelFeatureDescriptor& feature : features) {
        json.beginObject();
        json.member("name", feature.name());
        if (!feature.description().empty()) {
            json.member("description", feature.description());
        }
        json.member("required", true);
        json.member("featureType", "tensor");
        json.beginObject("tensor");
        const TensorShape shape = feature.tensorDescriptor().shape();
        json.shape("shape", &shape);
        json.member("dataType", typeName(feature.tensorDescriptor().tensorType()));
        json.endObject();
        json.endObject();
    }
    json.endArray();
}

}  // namespace

std::string manifestText(const Identity& identity, const std::vector<std::string>& files,
                         bool secured, const Descriptors& inputs, const Descriptors& outputs) {
    JsonOutput json;
    json.beginObject();
    json.member("id", identity.id);
    json.member("name", identity.name);
    json.member("author", identity.author);
    json.member("description", identity.description);
    json.member("sdkVersion", identity.sdkVersion);
    json.member("version", identity.version);
    json.beginObject("targets");
    json.beginObject("Openvino");
    json.beginArray("components");
    for (const std::string& file : files) {
        json.beginObject();
        json.member("name", secured ? ComponentKind::SecuredFile : ComponentKind::File);
        json.member("path", file);
        if (secured) {
            json.member("encryption", "aes");
        }
        json.endObject();
    }
    json.endArray();
    writeFeatures(json, "inputs", inputs);
    writeFeatures(json, "outputs", outputs);
    json.endObject();
    json.endObject();
    json.endObject();
    return json.text() + "\n";
}

}  // namespace quavin_tool
