#include <utility>

#include "quavin/registry.h"

namespace VelmoraQuavin {

RuntimeStatus::RuntimeStatus(std::vector<std::shared_ptr<QuavinModel>> models) {
    for (std::shared_ptr<QuavinModel>& model : models) {
        const std::shared_ptr<ModelRuntimeStatus> account =
            model == nullptr ? nullptr : model->getRuntimeStatus();
        if (account != nullptr) {
            modelsRuntimeStatus_.push_back(*account);
            loadedModels_.push_back(std::move(model));
        }
    }
}

ModelRuntimeStatus RuntimeStatus::getModelRuntimeStatus(std::shared_ptr<QuavinModel> model) const {
    for (const ModelRuntimeStatus& account : modelsRuntimeStatus_) {
        if (account.getModel() == model) {
            return account;
        }
    }
    throw Exception("model not found - this should not occur");
}

unsigned long long RuntimeStatus::getTotalMemoryConsumption() const {
    unsigned long long total = 0;
    for (const ModelRuntimeStatus& account : modelsRuntimeStatus_) {
        total += account.getCurrentMemoryConsumption();
    }
    return total;
}

}  // namespace VelmoraQuavin
