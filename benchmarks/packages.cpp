#include "packages.h"

#include <cstdlib>

namespace benchmark {

using namespace VelmoraQuavin;

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
        unsigned char key[16];
        for (std::size_t index = 0; index < sizeof key; ++index) {
            key[index] = static_cast<unsigned char>(
                std::strtoul(keyHex.substr(2 * index, 2).c_str(), nullptr, 16));
        }
        for (ModelComponent& component :
             metadata->getTargets().at(QuavinModelType::Openvino).components) {
            component.setCryptoKey(key);
        }
    }
    std::shared_ptr<QuavinModel> model;
    require(QuavinClient::instance().getModel(metadata, model, QuavinModelType::Openvino, options));
    return model;
}

}  // namespace benchmark
