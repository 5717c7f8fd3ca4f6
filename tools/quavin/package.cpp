#include "package.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "files.h"

namespace quavin_tool {

namespace fs = std::filesystem;
using VelmoraQuavin::ComponentKind;
using VelmoraQuavin::DataType;
using VelmoraQuavin::Filepath;
using VelmoraQuavin::ModelComponent;
using VelmoraQuavin::ModelTarget;
using VelmoraQuavin::QuavinModel;
using VelmoraQuavin::QuavinModelType;

std::string packageProblem(const std::string& package) {
    std::error_code ignored;
    if (fs::is_directory(fs::u8path(package), ignored)) {
        return "";
    }
    return isThere(package) ? package + " is no directory; unpack an archive first: quavin unpack"
                            : "There is no directory " + package;
}

Metadata readManifest(const std::string& package) {
    const std::string problem = packageProblem(package);
    if (!problem.empty()) {
        throw VelmoraQuavin::InvalidArgumentsException(problem);
    }
    auto metadata = std::make_shared<VelmoraQuavin::ModelMetadata>();
    require(metadata->load(Filepath(package).append(Filepath("manifest.json"))));
    return metadata;
}

ModelTarget& engineTarget(VelmoraQuavin::ModelMetadata& metadata) {
    const auto found = metadata.getTargets().find(QuavinModelType::Openvino);
    if (found == metadata.getTargets().end()) {
        throw VelmoraQuavin::ModelMetaDataException("The manifest has no target \"Openvino\"");
    }
    return found->second;
}

bool isSecured(const ModelTarget& target) {
    return std::any_of(target.components.begin(), target.components.end(),
                       [](const ModelComponent& component) {
                           return component.name == ComponentKind::SecuredFile;
                       });
}

void setKey(ModelTarget& target, const Key& key) {
    for (ModelComponent& component : target.components) {
        component.setCryptoKey(key.bytes());
    }
}

Metadata openPackage(const std::string& package, const KeyOptions& key) {
    Metadata metadata = readManifest(package);
    ModelTarget& target = engineTarget(*metadata);
    if (key.given()) {
        setKey(target, Key(key));
    } else if (isSecured(target)) {
        throw VelmoraQuavin::InvalidArgumentsException(
            "The package is secured: give its key with --key-file or --key-env");
    }
    return metadata;
}

std::shared_ptr<QuavinModel> loadModel(const Metadata& metadata) {
    std::shared_ptr<QuavinModel> model;
    require(VelmoraQuavin::QuavinClient::instance().getModel(metadata, model,
                                                             QuavinModelType::Openvino));
    return model;
}

Features zeroInputs(QuavinModel& model) {
    Features inputs;
    require(model.allocateInputs(inputs));
    return inputs;
}

Features predict(QuavinModel& model, const Features& inputs) {
    Features outputs;
    require(model.predict(inputs, outputs));
    return outputs;
}

bool isInputType(DataType type) {
    return type == DataType::FLOAT || type == DataType::INT8 || type == DataType::INT16 ||
           type == DataType::INT32;
}

}  // namespace quavin_tool
