#include "tools/quavin/package/package.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "package/source/network_components.h"
#include "tools/quavin/io/file.h"
#include "tools/quavin/io/new_path.h"
#include "tools/quavin/io/path_text.h"
#include "tools/quavin/io/require.h"
#include "tools/quavin/io/wiped_bytes.h"
#include "tools/quavin/package/secured_bytes.h"

namespace quavin_tool {

namespace fs = std::filesystem;
using VelmoraQuavin::ComponentKind;
using VelmoraQuavin::ModelComponent;
using VelmoraQuavin::ModelTarget;
using VelmoraQuavin::QuavinModel;
using VelmoraQuavin::QuavinModelType;

namespace {

// Whether a text is a network rather than the result of decrypting with a wrong key.
bool isNetwork(std::string_view text) {
    return text.find("<net") != std::string_view::npos &&
           text.find("</net>") != std::string_view::npos;
}

// A component's bytes, decrypted if secured.
WipedBytes contentOf(const std::string& package, const ModelComponent& component) {
    const std::string path = componentPath(package, component.path);
    WipedBytes content = readFile(path);
    return component.name == ComponentKind::SecuredFile
               ? decrypt(content, component.encryption.getKey(), path)
               : std::move(content);
}

// Appends advice to a text, which may or may not end as a sentence.
std::string joined(const std::string& text, const char* advice) {
    const bool ends =
        !text.empty() && std::string_view(".!?").find(text.back()) != std::string::npos;
    return text + (ends ? " " : ". ") + advice;
}

}  // namespace

std::string packageProblem(const std::string& package) {
    std::error_code ignored;
    if (fs::is_directory(fs::u8path(package), ignored)) {
        return "";
    }
    return isThere(package) ? package + " is neither a directory nor an archive"
                            : "There is no directory or archive " + package;
}

Metadata readManifest(const std::string& package) {
    const std::string problem = packageProblem(package);
    if (!problem.empty()) {
        throw VelmoraQuavin::InvalidArgumentsException(problem);
    }
    auto metadata = std::make_shared<VelmoraQuavin::ModelMetadata>();
    require(metadata->load(manifestPath(package)));
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
    setKey(target, key.bytes());
}

void setKey(ModelTarget& target, const unsigned char* key) {
    for (ModelComponent& component : target.components) {
        component.setCryptoKey(key);
    }
}

bool decryptsToNoNetwork(const std::string& package, const ModelTarget& target) {
    std::vector<const ModelComponent*> files;  // the network, the weights
    for (const ModelComponent& component : target.components) {
        if (VelmoraQuavin::internal::isNetworkFile(component)) {
            files.push_back(&component);
        }
    }
    if (files.size() < 2 || files[0]->name != ComponentKind::SecuredFile) {
        return false;
    }
    try {
        static_cast<void>(contentOf(package, *files[1]));
        return !isNetwork(contentOf(package, *files[0]).text());
    } catch (const VelmoraQuavin::Exception&) {
        return false;
    }
}

Metadata openPackage(const std::string& package, const Key* key) {
    Metadata metadata = readManifest(package);
    ModelTarget& target = engineTarget(*metadata);
    if (key != nullptr) {
        setKey(target, *key);
    } else if (isSecured(target)) {
        throw VelmoraQuavin::InvalidArgumentsException(
            std::string("The package's files are secured. ") + kMissingKeyAdvice);
    }
    return metadata;
}

std::shared_ptr<QuavinModel> loadModel(const Metadata& metadata,
                                       const VelmoraQuavin::EngineOptions& options) {
    std::shared_ptr<QuavinModel> model;
    VelmoraQuavin::QuavinStatus status = VelmoraQuavin::QuavinClient::instance().getModel(
        metadata, model, QuavinModelType::Openvino, options);
    if (!status.ok() &&
        decryptsToNoNetwork(shellPath(metadata->getRootDir()), engineTarget(*metadata))) {
        status.setDescription(joined(status.getDescription().str(), kWrongKeyAdvice));
    }
    require(status);
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

}  // namespace quavin_tool
