#pragma once

/// @file
/// The registry of loaded models and their memory accounts.

#include <memory>
#include <vector>

#include "quavin/export.h"
#include "quavin/model.h"
#include "quavin/status.h"

namespace VelmoraQuavin {

/// The memory account of one registered model. The library leaves it at 0: the host does the
/// accounting.
///
/// A value type that shares its model. Nothing is locked.
class QUAVIN_API ModelRuntimeStatus {
public:
    /// @param maxAllowedMemory the limit in bytes.
    /// @param model the model, shared.
    ModelRuntimeStatus(unsigned long long maxAllowedMemory, std::shared_ptr<QuavinModel> model);

    /// Bytes in use, as recorded by the host.
    unsigned long long getCurrentMemoryConsumption() const { return currentMemoryConsumption_; }
    /// The limit in bytes.
    unsigned long long getMaxAllowedMemoryConsumption() const {
        return maxAllowedMemoryConsumption_;
    }
    /// The model, shared.
    std::shared_ptr<QuavinModel> getModel() const { return model_; }

    /// Stores a value below the limit.
    /// @return MEMORY_LIMIT_EXCEEDED with "Current Memory consumption = " and the value if it is
    ///         below the limit and was stored; SUCCESS if it is not, and nothing was stored. The
    ///         reversed meaning is intentional: hosts rely on it.
    QuavinStatus setCurrentMemoryConsumption(unsigned long long value);
    /// Calls setCurrentMemoryConsumption() with the sum, which wraps at 64 bits, and returns its
    /// status.
    QuavinStatus addCurrentMemoryConsumption(unsigned long long amount);
    /// Calls setCurrentMemoryConsumption() with the difference, which wraps below 0, and returns
    /// its status.
    QuavinStatus removeCurrentMemoryConsumption(unsigned long long amount);

protected:
    /// Replaces the limit; the current value is not compared with it.
    /// @return SUCCESS.
    QuavinStatus setMaxAllowedMemoryConsumption(unsigned long long value);

private:
    unsigned long long maxAllowedMemoryConsumption_;
    unsigned long long currentMemoryConsumption_ = 0;
    std::shared_ptr<QuavinModel> model_;
};

/// A snapshot of registered models and their accounts.
///
/// A value type: once created, it is independent of the registry and readable on any thread. It
/// keeps its models alive.
class QUAVIN_API RuntimeStatus {
public:
    /// Copies the account of every model; models without one are left out.
    explicit RuntimeStatus(std::vector<std::shared_ptr<QuavinModel>> models);

    /// A copy of the list of models.
    std::vector<std::shared_ptr<QuavinModel>> getLoadedModels() const { return loadedModels_; }
    /// A copy of the accounts, in the order of the models.
    std::vector<ModelRuntimeStatus> getModelsRuntimeStatus() const { return modelsRuntimeStatus_; }
    /// A copy of the account of one model.
    /// @throws Exception "model not found - this should not occur" if the snapshot does not contain
    ///         it.
    ModelRuntimeStatus getModelRuntimeStatus(std::shared_ptr<QuavinModel> model) const;
    /// The sum of all accounts in bytes; wraps at 64 bits.
    unsigned long long getTotalMemoryConsumption() const;
    /// Always 0: there is no overall limit.
    unsigned long long getMaxAllowedTotalMemory() const { return maxAllowedTotalMemory_; }

private:
    std::vector<ModelRuntimeStatus> modelsRuntimeStatus_;
    unsigned long long maxAllowedTotalMemory_ = 0;
    std::vector<std::shared_ptr<QuavinModel>> loadedModels_;
};

/// Holds models and opens an account for each.
///
/// A registered model and its account refer to each other, so the model lives until unloadModel()
/// or the manager's destruction. Nothing is locked: use it from one thread at a time.
class QUAVIN_API ModelManager {
public:
    /// An empty registry.
    ModelManager();
    ModelManager(const ModelManager&) = delete;
    ModelManager& operator=(const ModelManager&) = delete;
    /// Releases every model and closes its account.
    ~ModelManager();

    /// Opens a new account without a limit and appends the model, which is shared.
    /// @return SUCCESS, or INVALID_ARGUMENTS for a null pointer.
    QuavinStatus registerModel(const std::shared_ptr<QuavinModel>& model);
    /// Makes the model release what it loaded, removes all its entries and closes its account.
    /// @return SUCCESS; INVALID_ARGUMENTS for a null pointer; the model's own status if it cannot
    ///         unload (it then stays registered); MODEL_NOT_LOADED if it was not registered,
    ///         although it has still released what it loaded.
    QuavinStatus unloadModel(const std::shared_ptr<QuavinModel>& model);
    /// A snapshot.
    RuntimeStatus getRuntimeStatus() const;

private:
    std::vector<std::shared_ptr<QuavinModel>> models_;
};

}  // namespace VelmoraQuavin
