#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "text/vocabulary.h"
#include "tools/quavin/cli/command_line.h"
#include "tools/quavin/cli/printing.h"
#include "tools/quavin/package/inspected_package.h"
#include "tools/quavin/package/package.h"

namespace quavin_tool {
namespace {

namespace fs = std::filesystem;
using VelmoraQuavin::ModelComponent;
using VelmoraQuavin::ModelFeatureDescriptor;
using VelmoraQuavin::ModelTarget;
using VelmoraQuavin::QuavinModelType;

struct InspectOptions {
    std::string package;
    OutputOptions output;
};

using Targets = std::map<QuavinModelType, const ModelTarget*>;

// Sorted by engine for a stable order.
Targets sortedTargets(const VelmoraQuavin::ModelMetadata& metadata) {
    Targets targets;
    for (const auto& [type, target] : metadata.getTargets()) {
        targets.emplace(type, &target);
    }
    return targets;
}

// The engine's key in a manifest, which is not its display name.
std::string keyOf(QuavinModelType type) {
    using namespace VelmoraQuavin::internal;
    return std::string(wordFor(kEngines, type, ""));
}

std::string kindOf(const ModelFeatureDescriptor& feature) {
    const std::string kind = VelmoraQuavin::GetQuavinFeatureTypeName(feature.type()).str();
    return feature.type() == VelmoraQuavin::QuavinFeatureType::TENSOR
               ? typeName(feature.tensorDescriptor().tensorType())
               : kind;
}

std::string tableOf(const ModelTarget& target, const Inspected& inspected) {
    std::vector<std::vector<std::string>> files{{"FILE", "KIND", "SIZE"}};
    for (const ModelComponent& component : target.components) {
        const auto size = inspected.sizes.find(component.path.str());
        files.push_back({printable(component.path), printable(component.name),
                         size == inspected.sizes.end() ? "missing" : readableSize(size->second)});
    }
    std::string text = table(files);
    for (const auto& [title, features] :
         {std::pair{"INPUT", &target.inputs}, std::pair{"OUTPUT", &target.outputs}}) {
        std::vector<std::vector<std::string>> rows{{title, "TYPE", "SHAPE", "DESCRIPTION"}};
        for (const ModelFeatureDescriptor& feature : *features) {
            rows.push_back({printable(feature.name()), kindOf(feature),
                            shapeText(feature.tensorDescriptor()),
                            printable(feature.description())});
        }
        text += "\n" + table(rows);
    }
    return text;
}

// Whether the signature is right takes a public key: that is for "verify".
std::string signatureText(const Inspected& inspected) {
    if (!inspected.signatureProblem.empty()) {
        return printable(inspected.signatureProblem);
    }
    if (!inspected.isSigned) {
        return "none";
    }
    return (inspected.keyHint.empty() ? std::string("by a key that it does not name")
                                      : "by the key " + printable(inspected.keyHint)) +
           ", not checked";
}

void print(const Inspected& inspected) {
    const VelmoraQuavin::ModelMetadata& metadata = *inspected.metadata;
    std::string engines;
    for (const auto& [type, target] : sortedTargets(metadata)) {
        engines += (engines.empty() ? "" : ", ") + keyOf(type);
    }
    std::cout << table({{"name", printable(metadata.getName())},
                        {"id", printable(metadata.getId())},
                        {"version", std::to_string(metadata.getVersion())},
                        {"author", printable(metadata.getAuthor())},
                        {"description", printable(metadata.getDescription())},
                        {"SDK version", printable(metadata.getSdkVersion())},
                        {"targets", engines.empty() ? "none" : engines},
                        {"signature", signatureText(inspected)}});
    for (const auto& [type, target] : sortedTargets(metadata)) {
        std::cout << "\nTarget " << keyOf(type) << "\n\n" << tableOf(*target, inspected);
    }
}

void writeTarget(JsonOutput& json, const ModelTarget& target, const Inspected& inspected) {
    json.beginArray("components");
    for (const ModelComponent& component : target.components) {
        json.beginObject();
        json.member("path", component.path);
        json.member("kind", component.name);
        const auto size = inspected.sizes.find(component.path.str());
        json.member("present", size != inspected.sizes.end());
        if (size != inspected.sizes.end()) {
            json.member("bytes", size->second);
        }
        json.endObject();
    }
    json.endArray();
    json.ports("inputs", target.inputs);
    json.ports("outputs", target.outputs);
}

void printJson(const Inspected& inspected) {
    const VelmoraQuavin::ModelMetadata& metadata = *inspected.metadata;
    JsonOutput json;
    json.beginObject();
    json.member("name", metadata.getName());
    json.member("id", metadata.getId());
    json.member("version", metadata.getVersion());
    json.member("author", metadata.getAuthor());
    json.member("description", metadata.getDescription());
    json.member("sdkVersion", metadata.getSdkVersion());
    json.member("signed", inspected.isSigned);
    if (inspected.isSigned) {
        json.member("keyHint", inspected.keyHint);
    }
    if (!inspected.signatureProblem.empty()) {
        json.member("signatureProblem", inspected.signatureProblem);
    }
    json.beginObject("targets");
    for (const auto& [type, target] : sortedTargets(metadata)) {
        json.beginObject(keyOf(type).c_str());
        writeTarget(json, *target, inspected);
        json.endObject();
    }
    json.endObject();
    json.endObject();
    std::cout << json.text() << '\n';
}

void inspect(const InspectOptions& options) {
    std::error_code ignored;
    const bool directory = fs::is_directory(fs::u8path(options.package), ignored);
    const Inspected inspected =
        directory ? inspectDirectory(options.package) : inspectArchive(options.package);
    options.output.json ? printJson(inspected) : print(inspected);
}

}  // namespace

void addInspectCommand(CLI::App& app) {
    auto options = std::make_shared<InspectOptions>();
    CLI::App* const command =
        app.add_subcommand("inspect", "Shows what a package or an archive contains. Needs no key.");
    addPackageArgument(*command, options->package);
    addOutputOptions(*command, options->output);
    command->callback([options] { inspect(*options); });
}

}  // namespace quavin_tool
