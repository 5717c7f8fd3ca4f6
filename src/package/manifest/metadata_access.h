#pragma once

#include <memory>
#include <string>

#include "package/json/json_access.h"
#include "quavin/metadata.h"

namespace VelmoraQuavin::internal {

/// Access to members of ModelMetadata that hosts cannot set.
struct MetadataAccess {
    /// Stores the contents of a manifest.
    /// @param manifest the manifest's name in diagnostics.
    /// @param digest to be remembered; null while no keys are trusted.
    /// @throws ModelMetaDataException if it has no targets; all other members are stored.
    static void readMembers(ModelMetadata& metadata, const JsonDocument& document,
                            const std::string& manifest,
                            std::shared_ptr<const ManifestDigest> digest);

    /// Makes loads take the components from memory, unless the metadata gets a root directory.
    /// Once the source's owner has given it up, nothing can be read any more.
    static void setMemory(ModelMetadata& metadata,
                          const std::shared_ptr<const ComponentSource>& memory) {
        metadata.memory_ = memory;
    }
    /// Whether loads take the components from memory.
    static bool isInMemory(const ModelMetadata& metadata) {
        return metadata.memory_.has_value() && *metadata.rootDir_.c_str() == 0;
    }
    /// The source set with setMemory(), if isInMemory(); null if it is gone.
    static std::shared_ptr<const ComponentSource> memory(const ModelMetadata& metadata) {
        return metadata.memory_->lock();
    }

    /// What was read last, for comparing it with a signature. Null while no keys are trusted, after
    /// a manifest without targets, for metadata built by a host, and if a member or a target is
    /// left from before. A manifest that could not be read or parsed changes nothing.
    static const std::shared_ptr<const ManifestDigest>& manifest(const ModelMetadata& metadata) {
        return metadata.manifest_;
    }

    /// Empty for metadata read while diagnostics were off, or built by a host.
    static const String& targetsAsWritten(const ModelMetadata& metadata) {
        return metadata.targetsAsWritten_;
    }
};

/// The name in messages of a package in memory.
constexpr const char* kPackageInMemory = "in memory";

/// The name of the metadata's package in messages.
inline String packageTitle(const ModelMetadata& metadata) {
    return MetadataAccess::isInMemory(metadata) ? String(kPackageInMemory)
                                                : String(metadata.getRootDir().c_str());
}

}  // namespace VelmoraQuavin::internal
