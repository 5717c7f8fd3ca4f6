#include "support/model_package.h"

#include <map>

#include "support/tar_archive.h"

namespace VelmoraQuavin::testing {
namespace {

std::string listed(const std::vector<std::string>& elements) {
    std::string text;
    for (const std::string& element : elements) {
        text += (text.empty() ? "\n        " : ",\n        ") + element;
    }
    return "[" + text + "]";
}

std::string within(const std::string& folder, const std::string& name) {
    return folder.empty() ? name : folder + "/" + name;
}

void write(const TempDirectory& directory, const PackageFiles& files, const std::string& folder) {
    for (const auto& [name, content] : files) {
        directory.write(within(folder, name), content);
    }
}

std::string dataTypeOf(const std::string& type) {
    static const std::map<std::string, std::string> names = {
        {"f32", "float"}, {"i8", "int8"},   {"i16", "int16"},   {"i32", "int32"},
        {"u8", "uint8"},  {"i64", "int64"}, {"boolean", "bool"}};
    return names.at(type);
}

std::vector<std::string> features(const std::vector<IrNetwork::Port>& ports) {
    std::vector<std::string> texts;
    for (const IrNetwork::Port& port : ports) {
        texts.push_back(tensorFeature(port.name, port.shape, dataTypeOf(port.type)));
    }
    return texts;
}

}  // namespace

std::string PackageText::manifest() const {
    std::vector<std::string> files;
    for (const auto& [kind, path] : components) {
        files.push_back(R"({"name": ")" + kind + R"(", "path": ")" + path + R"("})");
    }
    return "{\n  \"name\": \"" + name + "\",\n  \"version\": 1,\n  \"targets\": {\n    \"" +
           engine + "\": {\n      \"components\": " + listed(files) +
           ",\n      \"inputs\": " + listed(inputs) + ",\n      \"outputs\": " + listed(outputs) +
           "\n    }\n  }\n}\n";
}

std::string tensorFeature(const std::string& name, const IrNetwork::Shape& shape,
                          const std::string& dataType) {
    std::string extents;
    for (const std::int64_t extent : shape) {
        extents += (extents.empty() ? "" : ", ") + std::to_string(extent);
    }
    return R"({"name": ")" + name + R"(", "featureType": "tensor", "tensor": {"shape": [)" +
           extents + R"(], "dataType": ")" + dataType + R"("}})";
}

std::string scalarFeature(const std::string& name, const std::string& featureType) {
    return R"({"name": ")" + name + R"(", "featureType": ")" + featureType + R"("})";
}

PackageText describe(const IrNetwork& network) {
    PackageText text;
    text.inputs = features(network.inputs());
    text.outputs = features(network.outputs());
    return text;
}

void writeNetwork(const TempDirectory& directory, const IrNetwork& network,
                  const std::string& folder) {
    directory.write(within(folder, "net.xml"), network.topology());
    directory.write(within(folder, "net.bin"), network.weights());
}

void writeManifest(const TempDirectory& directory, const PackageText& text,
                   const std::string& folder) {
    directory.write(within(folder, "manifest.json"), text.manifest());
}

PackageFiles packageOf(const IrNetwork& network) {
    return {{"manifest.json", describe(network).manifest()},
            {"net.xml", network.topology()},
            {"net.bin", network.weights()}};
}

PackageFiles securedPackageOf(const IrNetwork& network, const CryptoKey& key) {
    PackageText text = describe(network);
    text.components = {{"secured_file", "net.xml"}, {"secured_file", "net.bin"}};
    return {{"manifest.json", text.manifest()},
            {"net.xml", secured(network.topology(), key, BlockFilling::kPkcs7)},
            {"net.bin", secured(network.weights(), key, BlockFilling::kPkcs7)}};
}

std::string archiveOf(const PackageFiles& files, const std::string& folder) {
    std::string archive = folder.empty() ? "" : tarDirectory(folder + "/");
    for (const auto& [name, content] : files) {
        archive += tarFile(within(folder, name), content);
    }
    return archive + tarEnd();
}

void writePackage(const TempDirectory& directory, const IrNetwork& network,
                  const std::string& folder) {
    write(directory, packageOf(network), folder);
}

void writeSecuredPackage(const TempDirectory& directory, const IrNetwork& network,
                         const CryptoKey& key, const std::string& folder) {
    write(directory, securedPackageOf(network, key), folder);
}

}  // namespace VelmoraQuavin::testing
