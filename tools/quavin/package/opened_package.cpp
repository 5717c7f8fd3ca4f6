#include "tools/quavin/package/opened_package.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "package/path/package_path.h"
#include "package/source/network_components.h"
#include "tools/quavin/io/file.h"
#include "tools/quavin/io/path_text.h"
#include "tools/quavin/io/require.h"
#include "tools/quavin/package/package_digests.h"
#include "tools/quavin/package/secured_bytes.h"

namespace quavin_tool {
namespace {

namespace fs = std::filesystem;
using VelmoraQuavin::ComponentKind;
using VelmoraQuavin::ModelComponent;
using VelmoraQuavin::ModelTarget;
using VelmoraQuavin::QuavinModelType;
using VelmoraQuavin::QuavinStatus;
using VelmoraQuavin::internal::packagePath;

// Whether a text is a network rather than the result of decrypting with a wrong key.
bool isNetwork(std::string_view text) {
    return text.find("<net") != std::string_view::npos &&
           text.find("</net>") != std::string_view::npos;
}

// Appends advice to a text, which may or may not end as a sentence.
std::string joined(const std::string& text, const char* advice) {
    const bool ends =
        !text.empty() && std::string_view(".!?").find(text.back()) != std::string::npos;
    return text + (ends ? " " : ". ") + advice;
}

}  // namespace

OpenedPackage::OpenedPackage(const std::string& package, const unsigned char* key)
    : package_(package), key_(key) {
    std::error_code ignored;
    if (fs::is_regular_file(fs::u8path(package), ignored)) {
        archive_.emplace(package, key);
    }
}

std::string OpenedPackage::problem() const {
    return archive_.has_value() ? "" : packageProblem(package_);
}

WipedBytes OpenedPackage::manifestText() const {
    return archive_.has_value() ? archive_->manifest() : readFile(join(package_, kManifestName));
}

std::optional<WipedBytes> OpenedPackage::signature() const {
    return archive_.has_value() ? archive_->signature() : signatureInDirectory(package_);
}

VelmoraQuavin::internal::SignedFiles OpenedPackage::digests(
    const VelmoraQuavin::internal::Statement& statement) const {
    return archive_.has_value() ? archive_->digests(statement)
                                : digestsInDirectory(package_, statement);
}

QuavinStatus OpenedPackage::readManifest(VelmoraQuavin::ModelMetadata& metadata) const {
    QuavinStatus status;
    if (archive_.has_value()) {
        const WipedBytes text = archive_->manifest();
        status = metadata.loadFromMemory(text.data(), text.size());
    } else {
        status = metadata.load(manifestPath(package_));
    }
    keys().applyTo(metadata);
    return status;
}

std::string OpenedPackage::filePath(const ModelComponent& component) const {
    return componentPath(package_, component.path);
}

std::string OpenedPackage::fileProblem(const ModelComponent& component) const {
    const char* const missing = "The file is missing";
    if (archive_.has_value()) {
        return archive_->sizeOf(packagePath(component.path.view())).has_value() ? "" : missing;
    }
    std::error_code ignored;
    const fs::path file = systemPath(filePath(component));
    if (fs::is_regular_file(file, ignored)) {
        return "";
    }
    return fs::exists(file, ignored) ? "It is not a regular file" : missing;
}

std::uint64_t OpenedPackage::fileSize(const ModelComponent& component) const {
    if (archive_.has_value()) {
        return archive_->sizeOf(packagePath(component.path.view())).value();
    }
    std::error_code ignored;
    return fs::file_size(systemPath(filePath(component)), ignored);
}

QuavinStatus OpenedPackage::describe(Descriptors& inputs, Descriptors& outputs) const {
    if (archive_.has_value()) {
        const WipedBytes& stored = archive_->stored();
        return VelmoraQuavin::describeNetwork(stored.data(), stored.size(), keys(), inputs,
                                              outputs);
    }
    return VelmoraQuavin::describeNetwork(*requireManifest(), inputs, outputs);
}

std::shared_ptr<VelmoraQuavin::QuavinModel> OpenedPackage::load(
    const VelmoraQuavin::EngineOptions& options) const {
    const Metadata metadata = requireManifest();
    auto& client = VelmoraQuavin::QuavinClient::instance();
    std::shared_ptr<VelmoraQuavin::QuavinModel> model;
    QuavinStatus status =
        archive_.has_value() ? client.getModel(archive_->stored().data(), archive_->stored().size(),
                                               keys(), model, QuavinModelType::Openvino, options)
                             : client.getModel(metadata, model, QuavinModelType::Openvino, options);
    if (!status.ok() && decryptsToNoNetwork(engineTarget(*metadata))) {
        status.setDescription(joined(status.getDescription().str(), kWrongKeyAdvice));
    }
    require(status);
    return model;
}

bool OpenedPackage::decryptsToNoNetwork(const ModelTarget& target) const {
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
        static_cast<void>(plainContent(*files[1]));
        return !isNetwork(plainContent(*files[0]).text());
    } catch (const VelmoraQuavin::Exception&) {
        return false;
    }
}

WipedBytes OpenedPackage::storedContent(const ModelComponent& component) const {
    return archive_.has_value() ? archive_->contentOf(packagePath(component.path.view()))
                                : readFile(filePath(component));
}

WipedBytes OpenedPackage::plainContent(const ModelComponent& component) const {
    WipedBytes content = storedContent(component);
    return component.name == ComponentKind::SecuredFile
               ? decrypt(content, component.encryption.getKey(), component.path.str())
               : std::move(content);
}

Metadata OpenedPackage::requireManifest() const {
    const std::string unusable = problem();
    if (!unusable.empty()) {
        throw VelmoraQuavin::InvalidArgumentsException(unusable);
    }
    auto metadata = std::make_shared<VelmoraQuavin::ModelMetadata>();
    require(readManifest(*metadata));
    if (key_ == nullptr && isSecured(engineTarget(*metadata))) {
        throw VelmoraQuavin::InvalidArgumentsException(
            std::string("The package's files are secured. ") + kMissingKeyAdvice);
    }
    return metadata;
}

VelmoraQuavin::PackageKeys OpenedPackage::keys() const {
    VelmoraQuavin::PackageKeys keys;
    if (key_ != nullptr) {
        keys.setComponentKey(key_);
        if (archive_.has_value() && archive_->isEncrypted()) {
            keys.setArchiveKey(key_);
        }
    }
    return keys;
}

}  // namespace quavin_tool
