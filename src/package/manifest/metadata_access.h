#pragma once

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

    /// Empty for metadata read while diagnostics were off, or built by a host.
    static const String& targetsAsWritten(const ModelMetadata& metadata) {
        return metadata.targetsAsWritten_;
    }
};

}  // namespace VelmoraQuavin::internal
