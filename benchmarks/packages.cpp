#include "packages.h"

#include <array>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace benchmark {

using namespace VelmoraQuavin;

namespace {

std::array<unsigned char, 16> keyOf(const std::string& hex) {
    std::array<unsigned char, 16> key{};
    for (std::size_t index = 0; index < key.size(); ++index) {
        key[index] =
            static_cast<unsigned char>(std::strtoul(hex.substr(2 * index, 2).c_str(), nullptr, 16));
    }
    return key;
}

}  // namespace

void require(const QuavinStatus& status) {
    if (!status.ok()) {
        throw Exception(status.getDescription(), status.getCode());
    }
}

std::shared_ptr<QuavinModel> loadPackage(const std::string& folder, const std::string& keyHex,
                                         const EngineOptions& options) {
    auto metadata = std::make_shared<ModelMetadata>();
    require(metadata->load(Filepath(folder).append(Filepath("manifest.json"))));
    if (!keyHex.empty()) {
        const auto key = keyOf(keyHex);
        for (ModelComponent& component :
             metadata->getTargets().at(QuavinModelType::Openvino).components) {
            component.setCryptoKey(key.data());
        }
    }
    std::shared_ptr<QuavinModel> model;
    require(QuavinClient::instance().getModel(metadata, model, QuavinModelType::Openvino, options));
    return model;
}

std::vector<char> readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    std::vector<char> content(file ? static_cast<std::size_t>(file.tellg()) : 0);
    file.seekg(0);
    if (!file.read(content.data(), static_cast<std::streamsize>(content.size()))) {
        throw std::runtime_error("cannot read " + path);
    }
    return content;
}

std::shared_ptr<QuavinModel> loadArchive(const std::vector<char>& archive,
                                         const std::string& keyHex) {
    PackageKeys keys;
    if (!keyHex.empty()) {
        keys.setArchiveKey(keyOf(keyHex).data());
    }
    std::shared_ptr<QuavinModel> model;
    require(QuavinClient::instance().getModel(archive.data(), archive.size(), keys, model,
                                              QuavinModelType::Openvino, EngineOptions()));
    return model;
}

std::vector<PackageBuffer> readBuffers(const std::string& folder) {
    ModelMetadata metadata;
    require(metadata.load(Filepath(folder).append(Filepath("manifest.json"))));
    std::vector<String> names = {"manifest.json"};
    for (const auto& component : metadata.getTargets().at(QuavinModelType::Openvino).components) {
        names.push_back(component.path);
    }
    std::vector<PackageBuffer> buffers;
    for (const String& name : names) {
        const auto content =
            std::make_shared<const std::vector<char>>(readFile(folder + "/" + name.str()));
        buffers.push_back({name, content->data(), content->size(), content});
    }
    return buffers;
}

std::shared_ptr<QuavinModel> loadBuffers(const std::vector<PackageBuffer>& buffers) {
    std::shared_ptr<QuavinModel> model;
    require(QuavinClient::instance().getModelFromBuffers(
        buffers, {}, model, QuavinModelType::Openvino, EngineOptions()));
    return model;
}

}  // namespace benchmark
