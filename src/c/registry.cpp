#include <string>
#include <vector>

#include "c/model_handle.h"
#include "c/results.h"
#include "c/sized_struct.h"
#include "quavin/c.h"
#include "quavin/registry.h"

namespace VelmoraQuavin::internal {
namespace {

/// One account of a snapshot, with the text that a quavin_registry_entry points to.
struct RegistryEntry {
    ModelRuntimeStatus account;
    std::string name;

    quavin_registry_entry plain() const {
        quavin_registry_entry entry{};
        entry.name = name.c_str();
        entry.memory = account.getCurrentMemoryConsumption();
        entry.memory_limit = account.getMaxAllowedMemoryConsumption();
        return entry;
    }
};

using Registry = std::vector<RegistryEntry>;

Registry snapshot() {
    Registry entries;
    for (const ModelRuntimeStatus& account :
         client().queryRuntimeStatus().getModelsRuntimeStatus()) {
        entries.push_back({account, account.getModel()->getName().str()});
    }
    return entries;
}

}  // namespace

template <>
struct HandleKind<quavin_registry> {
    using Object = Registry;
    static constexpr const char* kName = "a registry";
    static constexpr const char* kArgument = "registry";
};

}  // namespace VelmoraQuavin::internal

using namespace VelmoraQuavin;
using namespace VelmoraQuavin::internal;

quavin_status quavin_query_registry(quavin_registry** registry) {
    return guardedHandle(registry, [] { return std::make_shared<Registry>(snapshot()); });
}

quavin_status quavin_registry_get_count(quavin_registry* registry, size_t* count) {
    return guardedCount(count, [&] { return objectOf(registry)->size(); });
}

quavin_status quavin_registry_get_entry(quavin_registry* registry, size_t index,
                                        quavin_registry_entry* entry) {
    return guarded([&] {
        fillStruct(entry, elementAt(*objectOf(registry), index).plain(), "quavin_registry_entry");
    });
}

quavin_status quavin_registry_get_model(quavin_registry* registry, size_t index,
                                        quavin_model** model) {
    return guardedHandle(model, [&] {
        const auto entries = objectOf(registry);
        return std::make_shared<ModelHandle>(elementAt(*entries, index).account.getModel());
    });
}

quavin_status quavin_registry_release(quavin_registry* registry) {
    return guardedRelease(registry);
}

quavin_status quavin_unregister(quavin_model* model) {
    return guarded([&] {
        const auto handle = objectOf(model);
        require(client().getModelManager().unloadModel(handle->model()));
    });
}

quavin_status quavin_model_set_memory(quavin_model* model, uint64_t bytes) {
    return guarded([&] {
        const auto account = objectOf(model)->model()->getRuntimeStatus();
        if (account == nullptr) {
            throw Exception("The model is not registered", MODEL_NOT_LOADED);
        }
        // The status is the other way round: it says MEMORY_LIMIT_EXCEEDED of what was recorded.
        if (account->setCurrentMemoryConsumption(bytes).ok()) {
            throw Exception("The account's limit is " +
                                std::to_string(account->getMaxAllowedMemoryConsumption()),
                            MEMORY_LIMIT_EXCEEDED);
        }
    });
}
