#pragma once

#include <memory>
#include <optional>
#include <string>

#include "package/manifest/json_access.h"
#include "quavin/metadata.h"

namespace VelmoraQuavin::internal {

/// Access to members of ModelMetadata that hosts cannot set.
struct MetadataAccess {
    /// Stores the contents of a manifest.
    /// @param manifest the manifest's name in diagnostics.
    /// @throws ModelMetaDataException if it has no targets; all other members are stored.
    static void readMembers(ModelMetadata& metadata, const JsonDocument& document,
                            const std::string& manifest);

    /// Makes loads take the components from memory, as long as the root directory is empty. The
    /// source is given up by its owner when the first load is over, and further ones fail.
    static void setMemory(ModelMetadata& metadata,
                          const std::shared_ptr<const ComponentSource>& memory) {
        metadata.memory_ = memory;
    }
    /// Set if the metadata is of a package in memory; expired when that is no longer there.
    static const std::optional<std::weak_ptr<const ComponentSource>>& memory(
        const ModelMetadata& metadata) {
        return metadata.memory_;
    }

    /// Empty for metadata read while diagnostics were off, or built by a host.
    static const String& targetsAsWritten(const ModelMetadata& metadata) {
        return metadata.targetsAsWritten_;
    }
};

}  // namespace VelmoraQuavin::internal
