#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "engine/cache/cache_name.h"
#include "engine/cache/cache_seal.h"
#include "engine/cache/entry_buffer.h"
#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// A directory of compiled networks, one file each. It may hold other files, and other processes
/// may use it at the same time; any thread may use this object.
///
/// Nothing here fails a load: an entry that is damaged, foreign or unreadable counts as absent, and
/// the next store() replaces it. Nothing throws.
class CompiledCache {
public:
    /// @param directory in UTF-8, not empty; never created here.
    /// @param sizeLimit the bytes that all entries together may take; 0 for no limit.
    CompiledCache(String directory, std::uint64_t sizeLimit);

    /// Reads an entry.
    /// @param seal must be of the kind, and have the keys, that the entry was stored with.
    /// @param problem receives a human-readable line if there is something under that name that
    ///     cannot be used; empty otherwise, as it is if memory runs out.
    /// @return the content, in a buffer that is secret if the seal is; nothing if there is no such
    ///     entry.
    std::optional<EntryBuffer> find(const EntryName& name, const CacheSeal& seal,
                                    std::string& problem) const noexcept;

    /// Writes an entry, which only its owner may read, or replaces it; then removes the entries
    /// written longest ago until the rest is within the limit. An entry that exceeds the limit by
    /// itself is not written.
    /// @param buffer the content, which is sealed in place.
    /// @return a human-readable line on failure; empty on success. After a failure, an earlier
    ///     entry of that name is unchanged, unless only making room failed.
    std::string store(const EntryName& name, const CacheSeal& seal,
                      EntryBuffer buffer) const noexcept;

private:
    String pathOf(const EntryName& name) const;
    std::optional<EntryBuffer> read(const EntryName& name, const CacheSeal& seal,
                                    std::string& problem) const;
    std::string write(const EntryName& name, const CacheSeal& seal, EntryBuffer& buffer) const;

    String directory_;
    std::uint64_t sizeLimit_;
};

}  // namespace VelmoraQuavin::internal
