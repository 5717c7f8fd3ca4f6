#include "tools/quavin/check/manifest_lint.h"

#include <algorithm>
#include <array>
#include <string>

#include "package/manifest/manifest_document.h"
#include "text/vocabulary.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::internal::kDataTypes;
using VelmoraQuavin::internal::kEngines;
using VelmoraQuavin::internal::kFeatureTypes;
using VelmoraQuavin::internal::meaningOf;
using Json = VelmoraQuavin::internal::JsonValue;

constexpr std::array<std::string_view, 5> kTexts{"id", "name", "author", "description",
                                                 "sdkVersion"};
constexpr std::array<std::string_view, 3> kLists{"components", "inputs", "outputs"};
template <typename Names>
bool holds(const Names& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

std::string_view textOf(const Json& value) {
    return {value.GetString(), value.GetStringLength()};
}

void lintIdentity(const Json& root, Findings& findings) {
    for (const auto& member : root.GetObject()) {
        const std::string_view name = textOf(member.name);
        const std::string where = "\"" + std::string(name) + "\"";
        if (holds(kTexts, name)) {
            if (!member.value.IsString()) {
                findings.warning(where, "It is not a string and is ignored", "Put it in quotes.");
            }
        } else if (name == "version") {
            if (!member.value.IsInt()) {
                findings.warning(where, "It is not a 32-bit integer and is ignored",
                                 "Write a plain number, such as 3.");
            }
        } else if (name != "targets" && name != "$schema") {
            findings.warning(where, "This member is unknown and is ignored", "Check its spelling.");
        }
    }
}

void lintFeature(const std::string& where, const Json& feature, Findings& findings) {
    if (!feature.IsObject()) {
        findings.warning(where, "It is not an object",
                         "Declare a name, a featureType and a block.");
        return;
    }
    const auto kind = feature.FindMember("featureType");
    if (kind == feature.MemberEnd() || !kind->value.IsString() ||
        meaningOf(kFeatureTypes, textOf(kind->value)) == nullptr) {
        findings.warning(where, "Its featureType is unknown", "Write \"tensor\".");
        return;
    }
    const auto block = feature.FindMember(kind->value.GetString());
    if (block == feature.MemberEnd() || !block->value.IsObject()) {
        findings.warning(where, "It has no block \"" + std::string(textOf(kind->value)) + "\"",
                         "Add one with the shape and the dataType.");
        return;
    }
    const auto type = block->value.FindMember("dataType");
    if (type != block->value.MemberEnd() &&
        (!type->value.IsString() || meaningOf(kDataTypes, textOf(type->value)) == nullptr)) {
        findings.warning(where, "Its dataType is unknown", "Write float, int8, int16 or int32.");
    }
}

void lintTarget(const Json& target, Findings& findings) {
    if (!target.IsObject()) {
        return;  // reported separately: it has no components
    }
    for (const auto& member : target.GetObject()) {
        const std::string name(textOf(member.name));
        if (!holds(kLists, name)) {
            findings.warning("\"" + name + "\" of the target",
                             "This member is unknown and is ignored", "Check its spelling.");
        } else if (!member.value.IsArray()) {
            findings.warning("\"" + name + "\" of the target", "It is not an array and is ignored",
                             "Put it in brackets.");
        } else if (name != "components") {
            rapidjson::SizeType index = 0;
            for (const Json& feature : member.value.GetArray()) {
                lintFeature("entry " + std::to_string(++index) + " of \"" + name + "\"", feature,
                            findings);
            }
        }
    }
}

}  // namespace

void lintManifest(std::string_view manifest, Findings& findings) {
    VelmoraQuavin::internal::JsonDocument root;
    if (VelmoraQuavin::internal::parseManifest(manifest, root).fault !=
        VelmoraQuavin::internal::ManifestFault::kNone) {
        return;  // reported when it was first read
    }
    lintIdentity(root, findings);
    const auto targets = root.FindMember("targets");
    if (targets == root.MemberEnd() || !targets->value.IsObject()) {
        return;
    }
    for (const auto& target : targets->value.GetObject()) {
        const std::string_view engine = textOf(target.name);
        if (meaningOf(kEngines, engine) == nullptr) {
            findings.warning("target \"" + std::string(engine) + "\"", "This engine is unknown",
                             "This library uses \"Openvino\".");
        } else if (engine == "Openvino") {
            lintTarget(target.value, findings);
        }
    }
}

}  // namespace quavin_tool
