#include <algorithm>
#include <limits>
#include <utility>

#include "quavin/registry.h"

namespace VelmoraQuavin {
namespace {

constexpr unsigned long long kNoLimit = std::numeric_limits<unsigned long long>::max();

}  // namespace

ModelManager::ModelManager() = default;

// Resetting the accounts breaks the reference cycles between models and their accounts.
ModelManager::~ModelManager() {
    for (const std::shared_ptr<QuavinModel>& model : models_) {
        model->runtimeStatus_.reset();
    }
}

QuavinStatus ModelManager::registerModel(const std::shared_ptr<QuavinModel>& model) {
    if (model == nullptr) {
        return {INVALID_ARGUMENTS, "There is no model to register"};
    }
    auto account = std::make_shared<ModelRuntimeStatus>(kNoLimit, model);
    models_.push_back(model);
    model->runtimeStatus_ = std::move(account);
    return {SUCCESS, ""};
}

QuavinStatus ModelManager::unloadModel(const std::shared_ptr<QuavinModel>& model) {
    if (model == nullptr) {
        return {INVALID_ARGUMENTS, "There is no model to unload"};
    }
    QuavinStatus status = model->unloadImpl();
    if (!status.ok()) {
        return status;
    }
    const auto kept = std::remove(models_.begin(), models_.end(), model);
    if (kept == models_.end()) {
        return {MODEL_NOT_LOADED, "Could not remove model from references"};
    }
    models_.erase(kept, models_.end());
    model->runtimeStatus_.reset();
    return status;
}

RuntimeStatus ModelManager::getRuntimeStatus() const {
    return RuntimeStatus(models_);
}

}  // namespace VelmoraQuavin
