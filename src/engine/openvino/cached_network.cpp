#include "engine/openvino/cached_network.h"

#include <istream>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "core/diagnostics.h"
#include "engine/openvino/compiling.h"
#include "engine/openvino/entry_streams.h"
#include "engine/openvino/network_settings.h"

namespace VelmoraQuavin::internal {
namespace {

// Changes with anything else here that a compiled network depends on.
constexpr std::string_view kRevision = "1";

std::unique_ptr<CacheSeal> sealFor(const NetworkComponents& network) {
    if (!network.areSecret()) {
        return makeChecksumSeal();
    }
    std::vector<const Encryption*> keys;
    if (const SealedPackage* const sealed = network.source.sealed()) {
        keys.push_back(&sealed->key);
    }
    for (const NetworkComponentEntry* component : {&network.topology, &network.weights}) {
        if (component->isSecured()) {
            keys.push_back(&component->encryption);
        }
    }
    return makeSecretSeal(keys);
}

void add(CacheName& name, const NetworkComponentEntry& component, std::string_view stored) {
    name.add(component.isSecured() ? "secured" : "plain");
    name.add(stored);
}

}  // namespace

CachedNetwork::CachedNetwork(const EngineOptions& options, StoredNetwork& stored)
    : options_(options), stored_(stored) {
    if (options.cacheDirectory.empty()) {
        return;
    }
    const NetworkComponents& network = stored.components();
    if (network.source.isVerified() && !network.areSecret()) {
        // A checksum tells nothing about who made an entry.
        report("networks of plain packages are not cached while keys are trusted");
        return;
    }
    seal_ = sealFor(network);
    if (seal_ == nullptr) {
        report("secured networks cannot be cached on this system");
        return;
    }
    cache_.emplace(options.cacheDirectory, options.cacheSizeLimit);
}

std::optional<InferenceEngine::ExecutableNetwork> CachedNetwork::find(
    InferenceEngine::Core& core) noexcept {
    if (!cache_ || !stored_.read()) {
        return std::nullopt;
    }
    try {
        name_ = nameFor(core);
        std::string problem;
        std::optional<EntryBuffer> entry = cache_->find(*name_, *seal_, problem);
        if (!problem.empty()) {
            report(problem);
        }
        if (entry) {
            const auto bytes = std::make_shared<EntryInput>(*std::move(entry));
            std::istream stream(bytes.get());
            return importNetwork(core, stream, options_);
        }
    } catch (...) {
        // Such as an entry of a processor with other instructions. Compiling replaces it.
        report("the engine refuses the entry");
    }
    return std::nullopt;
}

void CachedNetwork::store(InferenceEngine::ExecutableNetwork& network) noexcept {
    if (!name_) {
        return;
    }
    try {
        EntryBuffer entry = seal_->makeBuffer();
        EntryOutput bytes(entry);
        std::ostream stream(&bytes);
        stream.exceptions(std::ios::badbit);
        exportNetwork(network, stream);
        const std::string problem = cache_->store(*name_, *seal_, std::move(entry));
        if (!problem.empty()) {
            report(problem);
        }
    } catch (...) {
        report("the engine cannot export the network");
    }
}

// The instructions that the network was compiled for are known to the processor by its name and
// capabilities, as far as the engine tells; it refuses an entry compiled for others.
EntryName CachedNetwork::nameFor(const InferenceEngine::Core& core) const {
    CacheName name;
    name.add(kRevision);
    const EngineInfo info = makeEngineInfo(core, kEngineDevice, {});
    for (const String* text : {&info.runtimeVersion, &info.deviceName}) {
        name.add(text->view());
    }
    for (const String& capability : info.capabilities) {
        name.add(capability.view());
    }
    for (const EngineSetting& setting : engineSettings(options_, core)) {
        name.add(setting.name);
        name.add(setting.value);
    }
    const NetworkComponents& components = stored_.components();
    if (const SealedPackage* const sealed = components.source.sealed()) {
        // The name must not tell what is inside.
        name.add("sealed");
        name.add(sealed->stored);
        name.add(components.topology.path.view());
        name.add(components.weights.path.view());
        return name.entry();
    }
    add(name, components.topology, stored_.topology());
    add(name, components.weights, stored_.weights());
    return name.entry();
}

void CachedNetwork::report(std::string_view problem) const noexcept {
    diagnose([&] {
        return "loading the package " + inQuotes(stored_.components().source.name()) +
               " with the cache " + inQuotes(options_.cacheDirectory) + ": " + std::string(problem);
    });
}

}  // namespace VelmoraQuavin::internal
