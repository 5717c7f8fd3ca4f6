#pragma once

/// @file
/// The registry of loaded models and their memory accounts.

#include <memory>
#include <vector>

#include "quavin/export.h"
#include "quavin/model.h"
#include "quavin/status.h"

namespace VelmoraQuavin {

/// The memory account of one registered model. The library leaves it at 0: hosts account.
///
/// A value type that shares its model. Nothing is locked.
class QUAVIN_API ModelRuntimeStatus {
public:
    /// @param maxAllowedMemory the limit in bytes.
    /// @param model the model, shared.
    ModelRuntimeStatus(unsigned long long maxAllowedMemory, std::shared_ptr<QuavinModel> model);

    /// Bytes in use, as the host has accounted them.
    unsigned long long getCurrentMemoryConsumption() const { return currentMemoryConsumption_; }
    /// The limit in bytes.
    unsigned long long getMaxAllowedMemoryConsumption() const {
        return maxAllowedMemoryConsumption_;
    }
    /// The model, shared.
    std::shared_ptr<QuavinModel> getModel() const { return model_; }

    /// Stores a value below the limit.
    /// @return MEMORY_LIMIT_EXCEEDED with "Current Memory consumption = " and the value where it
    ///         is below the limit and has been stored; SUCCESS where it is not, and nothing is
    ///         stored. Hosts rely on this sense of the answer.
    QuavinStatus setCurrentMemoryConsumption(unsigned long long value);
    /// setCurrentMemoryConsumption() of the sum, which wraps at 64 bits; the same answers.
    QuavinStatus addCurrentMemoryConsumption(unsigned long long amount);
    /// setCurrentMemoryConsumption() of the difference, which wraps below 0; the same answers.
    QuavinStatus removeCurrentMemoryConsumption(unsigned long long amount);

protected:
    /// Replaces the limit; what is accounted already is not compared with it.
    /// @return SUCCESS.
    QuavinStatus setMaxAllowedMemoryConsumption(unsigned long long value);

private:
    unsigned long long maxAllowedMemoryConsumption_;
    unsigned long long currentMemoryConsumption_ = 0;
    std::shared_ptr<QuavinModel> model_;
};

/// A snapshot of registered models and their accounts.
///
/// A value type: independent of the registry once made, and readable on any thread. It keeps its
/// models alive.
class QUAVIN_API RuntimeStatus {
public:
    /// Copies the account of every model; models without one are left out.
    explicit RuntimeStatus(std::vector<std::shared_ptr<QuavinModel>> models);

    /// A copy of the list of models.
    std::vector<std::shared_ptr<QuavinModel>> getLoadedModels() const { return loadedModels_; }
    /// A copy of the accounts, in the order of the models.
    std::vector<ModelRuntimeStatus> getModelsRuntimeStatus() const { return modelsRuntimeStatus_; }
    /// A copy of the account of one model.
    /// @throws Exception "model not found - this should not occur" where the snapshot lacks it.
    ModelRuntimeStatus getModelRuntimeStatus(std::shared_ptr<QuavinModel> model) const;
    /// The sum of all accounts in bytes; wraps at 64 bits.
    unsigned long long getTotalMemoryConsumption() const;
    /// Always 0: there is no limit over all models.
    unsigned long long getMaxAllowedTotalMemory() const { return maxAllowedTotalMemory_; }

private:
    std::vector<ModelRuntimeStatus> modelsRuntimeStatus_;
    unsigned long long maxAllowedTotalMemory_ = 0;
    std::vector<std::shared_ptr<QuavinModel>> loadedModels_;
};

/// Holds models and opens an account for each.
///
/// A registered model and its account refer to each other, so the model lives until unloadModel()
/// or the manager's destruction. Nothing is locked: one thread at a time.
class QUAVIN_API ModelManager {
public:
    /// An empty registry.
    ModelManager();
    ModelManager(const ModelManager&) = delete;
    ModelManager& operator=(const ModelManager&) = delete;
    /// Lets every model go and closes its account.
    ~ModelManager();

    /// Opens a new account without a limit and adds the model, which is shared, to the end.
    /// @return SUCCESS, or INVALID_ARGUMENTS for a null pointer.
    QuavinStatus registerModel(const std::shared_ptr<QuavinModel>& model);
    /// Has the model release what it loaded, removes every entry of it and closes its account.
    /// @return SUCCESS; INVALID_ARGUMENTS for a null pointer; what the model answers where it
    ///         cannot unload (it stays registered then); MODEL_NOT_LOADED where it was not
    ///         registered, though it has released what it loaded all the same.
    QuavinStatus unloadModel(const std::shared_ptr<QuavinModel>& model);
    /// A snapshot.
    RuntimeStatus getRuntimeStatus() const;

private:
    std::vector<std::shared_ptr<QuavinModel>> models_;
};

}  // namespace VelmoraQuavin
