#pragma once

#include <inference_engine.hpp>
#include <memory>
#include <optional>
#include <string_view>

#include "engine/cache/cache_name.h"
#include "engine/cache/cache_seal.h"
#include "engine/cache/compiled_cache.h"
#include "engine/openvino/network_reading.h"
#include "quavin/engine_options.h"

namespace VelmoraQuavin::internal {

/// One network's place in the cache that the host's options name. Without a cache, where a secured
/// network cannot be cached, and for a plain network of a verified package, which anybody could
/// have put there, it does nothing. No failure of the cache is a failure of the load: the
/// diagnostics tell about it.
class CachedNetwork {
public:
    /// @param stored must outlive this.
    /// @throws std::bad_alloc if memory runs out.
    CachedNetwork(const EngineOptions& options, StoredNetwork& stored);

    /// Reads the stored network and looks it up.
    /// @return the compiled network; nothing if it has to be compiled.
    std::optional<InferenceEngine::ExecutableNetwork> find(InferenceEngine::Core& core) noexcept;
    /// Puts the network that find() did not find into the cache.
    void store(InferenceEngine::ExecutableNetwork& network) noexcept;
    /// Tells the diagnostics why the cache did not help.
    void report(std::string_view problem) const noexcept;

private:
    EntryName nameFor(const InferenceEngine::Core& core) const;

    const EngineOptions& options_;
    StoredNetwork& stored_;
    std::unique_ptr<CacheSeal> seal_;  // null without a cache
    std::optional<CompiledCache> cache_;
    std::optional<EntryName> name_;  // once looked up
};

}  // namespace VelmoraQuavin::internal
