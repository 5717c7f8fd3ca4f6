#include <utility>

#include "client/client_texts.h"
#include "client/device_of_type.h"
#include "client/loadable_options.h"
#include "engine/engine.h"
#include "model/engine_model.h"
#include "package/manifest/manifest_path.h"
#include "package/signature/trusted_keys.h"
#include "package/source/component_source.h"
#include "quavin/client.h"
#include "text/unicode.h"

namespace VelmoraQuavin {

using internal::deviceOfType;

QuavinStatus QuavinClient::getModel(const String& path, std::shared_ptr<QuavinModel>& model,
                                    int option, QuavinModelType type) {
    return getModel(path, model, option, type, config_.GetEngineOptions());
}

QuavinStatus QuavinClient::getModel(const String& path, std::shared_ptr<QuavinModel>& model,
                                    Device device, int option) {
    return getModel(path, model, std::move(device), option, config_.GetEngineOptions());
}

QuavinStatus QuavinClient::getModel(const std::u16string& path, std::shared_ptr<QuavinModel>& model,
                                    int option, QuavinModelType type) {
    return getModel(path, model, option, type, config_.GetEngineOptions());
}

QuavinStatus QuavinClient::getModel(const std::u16string& path, std::shared_ptr<QuavinModel>& model,
                                    Device device, int option) {
    return getModel(path, model, std::move(device), option, config_.GetEngineOptions());
}

QuavinStatus QuavinClient::getModel(std::shared_ptr<ModelMetadata> metadata,
                                    std::shared_ptr<QuavinModel>& model, Device device) {
    return getModel(std::move(metadata), model, std::move(device), config_.GetEngineOptions());
}

QuavinStatus QuavinClient::getModel(std::shared_ptr<ModelMetadata> metadata,
                                    std::shared_ptr<QuavinModel>& model, QuavinModelType type) {
    return getModel(std::move(metadata), model, type, config_.GetEngineOptions());
}

QuavinStatus QuavinClient::getModel(const String& path, std::shared_ptr<QuavinModel>& model,
                                    int /*option*/, QuavinModelType type,
                                    const EngineOptions& options) {
    return loadPackage(path, model, deviceOfType(type), Registration::kNone, options);
}

QuavinStatus QuavinClient::getModel(const String& path, std::shared_ptr<QuavinModel>& model,
                                    Device device, int /*option*/, const EngineOptions& options) {
    return loadPackage(path, model, device, Registration::kRegistered, options);
}

QuavinStatus QuavinClient::getModel(const std::u16string& path, std::shared_ptr<QuavinModel>& model,
                                    int option, QuavinModelType type,
                                    const EngineOptions& options) {
    return getModel(String(internal::utf16ToUtf8(path)), model, option, type, options);
}

QuavinStatus QuavinClient::getModel(const std::u16string& path, std::shared_ptr<QuavinModel>& model,
                                    Device device, int option, const EngineOptions& options) {
    return getModel(String(internal::utf16ToUtf8(path)), model, std::move(device), option, options);
}

QuavinStatus QuavinClient::getModel(std::shared_ptr<ModelMetadata> metadata,
                                    std::shared_ptr<QuavinModel>& model, Device device,
                                    const EngineOptions& options) {
    return loadMetadata(metadata, model, device, Registration::kRegistered, options);
}

QuavinStatus QuavinClient::getModel(std::shared_ptr<ModelMetadata> metadata,
                                    std::shared_ptr<QuavinModel>& model, QuavinModelType type,
                                    const EngineOptions& options) {
    return loadMetadata(metadata, model, deviceOfType(type), Registration::kNone, options);
}

QuavinStatus QuavinClient::cloneModel(const std::shared_ptr<QuavinModel>& model,
                                      std::shared_ptr<QuavinModel>& clone) {
    if (!initialized_) {
        return internal::notInitialized();
    }
    if (model == nullptr || !model->isLoaded()) {
        return {MODEL_NOT_LOADED, internal::kNoModelLoaded};
    }
    const auto* const original = dynamic_cast<const internal::EngineModel*>(model.get());
    if (original == nullptr) {
        return {FAILURE, "The model cannot be cloned"};
    }
    try {
        clone = original->clone();
        return {SUCCESS, ""};
    } catch (...) {
        return getStatusFromCurrentException();
    }
}

// If the library is off, this too returns MODEL_NOT_LOADED, not NOT_INITIALIZED.
QuavinStatus QuavinClient::unloadModel(std::shared_ptr<QuavinModel>& model) {
    if (initialized_ && model != nullptr) {
        return model->unloadImpl();
    }
    return {MODEL_NOT_LOADED, internal::kNoModelLoaded};
}

QuavinStatus QuavinClient::loadPackage(const String& path, std::shared_ptr<QuavinModel>& model,
                                       const Device& device, Registration registration,
                                       const EngineOptions& options) {
    if (!initialized_) {
        return internal::notInitialized();
    }
    if (path.empty()) {
        return {INVALID_MODEL_PATH, "modelpath specified is empty"};
    }
    try {
        internal::requireLoadable(options);
        model.reset();
        auto metadata = std::make_shared<ModelMetadata>();
        const QuavinStatus status = metadata->load(internal::manifestPath(path));
        return status.ok() ? createAndLoad(metadata, model, device, registration, options) : status;
    } catch (...) {
        return getStatusFromCurrentException();
    }
}

QuavinStatus QuavinClient::loadMetadata(const std::shared_ptr<ModelMetadata>& metadata,
                                        std::shared_ptr<QuavinModel>& model, const Device& device,
                                        Registration registration, const EngineOptions& options) {
    if (!initialized_) {
        return internal::notInitialized();
    }
    if (metadata == nullptr) {
        return {INVALID_ARGUMENTS, "There is no metadata to load a model from"};
    }
    try {
        internal::requireLoadable(options);
        return createAndLoad(metadata, model, device, registration, options);
    } catch (...) {
        return getStatusFromCurrentException();
    }
}

QuavinStatus QuavinClient::createAndLoad(const std::shared_ptr<ModelMetadata>& metadata,
                                         std::shared_ptr<QuavinModel>& model, const Device& device,
                                         Registration registration, const EngineOptions& options) {
    std::shared_ptr<const internal::ComponentSource> verified;
    if (internal::areKeysTrusted()) {
        // Before anything else is made of the manifest.
        verified = internal::makeComponentSource(*metadata);
    }
    const internal::Engine* const engine = internal::chooseEngine(*metadata, device.engineType);
    if (engine == nullptr) {
        return {MODEL_METADATA_ERROR, "None of the target applicable for the platform found"};
    }
    model = engine->makeModel(metadata->getName(), device, options);
    if (registration == Registration::kRegistered) {
        // Fails only for null, which no engine returns.
        static_cast<void>(modelManager_.registerModel(model));
    }
    if (verified != nullptr) {
        if (auto* const loading = dynamic_cast<internal::EngineModel*>(model.get())) {
            loading->setVerified(std::move(verified));
        }
    }
    // A model stays registered even if loading it fails: the host sees it in the runtime status.
    QuavinStatus status = model->load(metadata);
    if (!status.ok()) {
        model.reset();
    }
    return status;
}

}  // namespace VelmoraQuavin
