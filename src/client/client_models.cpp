#include <utility>

#include "client/client_texts.h"
#include "engine/engine.h"
#include "package/manifest/manifest_path.h"
#include "quavin/client.h"
#include "text/unicode.h"

namespace VelmoraQuavin {
namespace {

Device deviceOfType(QuavinModelType type) {
    Device device;
    device.engineType = type;
    return device;
}

QuavinStatus notInitialized() {
    return {NOT_INITIALIZED, internal::kNotInitialized};
}

}  // namespace

QuavinStatus QuavinClient::getModel(const String& path, std::shared_ptr<QuavinModel>& model,
                                    int /*option*/, QuavinModelType type) {
    return loadPackage(path, model, deviceOfType(type), Registration::kNone);
}

QuavinStatus QuavinClient::getModel(const String& path, std::shared_ptr<QuavinModel>& model,
                                    Device device, int /*option*/) {
    return loadPackage(path, model, device, Registration::kRegistered);
}

QuavinStatus QuavinClient::getModel(const std::u16string& path, std::shared_ptr<QuavinModel>& model,
                                    int option, QuavinModelType type) {
    return getModel(String(internal::utf16ToUtf8(path)), model, option, type);
}

QuavinStatus QuavinClient::getModel(const std::u16string& path, std::shared_ptr<QuavinModel>& model,
                                    Device device, int option) {
    return getModel(String(internal::utf16ToUtf8(path)), model, std::move(device), option);
}

QuavinStatus QuavinClient::getModel(std::shared_ptr<ModelMetadata> metadata,
                                    std::shared_ptr<QuavinModel>& model, Device device) {
    return loadMetadata(metadata, model, device, Registration::kRegistered);
}

QuavinStatus QuavinClient::getModel(std::shared_ptr<ModelMetadata> metadata,
                                    std::shared_ptr<QuavinModel>& model, QuavinModelType type) {
    return loadMetadata(metadata, model, deviceOfType(type), Registration::kNone);
}

// If the library is off, this too returns MODEL_NOT_LOADED, not NOT_INITIALIZED.
QuavinStatus QuavinClient::unloadModel(std::shared_ptr<QuavinModel>& model) {
    if (initialized_ && model != nullptr) {
        return model->unloadImpl();
    }
    return {MODEL_NOT_LOADED, "There is no model loaded"};
}

QuavinStatus QuavinClient::loadPackage(const String& path, std::shared_ptr<QuavinModel>& model,
                                       const Device& device, Registration registration) {
    if (!initialized_) {
        return notInitialized();
    }
    if (path.empty()) {
        return {INVALID_MODEL_PATH, "modelpath specified is empty"};
    }
    try {
        model.reset();
        auto metadata = std::make_shared<ModelMetadata>();
        const QuavinStatus status = metadata->load(internal::manifestPath(path));
        return status.ok() ? createAndLoad(metadata, model, device, registration) : status;
    } catch (...) {
        return getStatusFromCurrentException();
    }
}

QuavinStatus QuavinClient::loadMetadata(const std::shared_ptr<ModelMetadata>& metadata,
                                        std::shared_ptr<QuavinModel>& model, const Device& device,
                                        Registration registration) {
    if (!initialized_) {
        return notInitialized();
    }
    if (metadata == nullptr) {
        return {INVALID_ARGUMENTS, "There is no metadata to load a model from"};
    }
    try {
        return createAndLoad(metadata, model, device, registration);
    } catch (...) {
        return getStatusFromCurrentException();
    }
}

QuavinStatus QuavinClient::createAndLoad(const std::shared_ptr<ModelMetadata>& metadata,
                                         std::shared_ptr<QuavinModel>& model, const Device& device,
                                         Registration registration) {
    const internal::Engine* const engine = internal::chooseEngine(*metadata, device.engineType);
    if (engine == nullptr) {
        return {MODEL_METADATA_ERROR, "None of the target applicable for the platform found"};
    }
    model = engine->makeModel(metadata->getName(), device);
    if (registration == Registration::kRegistered) {
        // Fails only for null, which no engine returns.
        static_cast<void>(modelManager_.registerModel(model));
    }
    // A model stays registered even if loading it fails: the host sees it in the runtime status.
    QuavinStatus status = model->load(metadata);
    if (!status.ok()) {
        model.reset();
    }
    return status;
}

}  // namespace VelmoraQuavin
