#pragma once

#include <string>

#include "package/manifest/json_access.h"
#include "quavin/metadata.h"

namespace VelmoraQuavin::internal {

/// The members of ModelMetadata that hosts do not set.
struct MetadataAccess {
    /// Stores what a manifest holds.
    /// @param manifest how diagnostics name it.
    /// @throws ModelMetaDataException if it has no targets; what stands before them is stored.
    static void readMembers(ModelMetadata& metadata, const JsonDocument& document,
                            const std::string& manifest);

    /// Empty for metadata that were read while diagnostics were off, or that a host built.
    static const String& targetsAsWritten(const ModelMetadata& metadata) {
        return metadata.targetsAsWritten_;
    }
};

}  // namespace VelmoraQuavin::internal
