#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "package/source/component_source.h"
#include "quavin/package_memory.h"

namespace VelmoraQuavin::internal {

/// A package in memory. The caller's bytes must outlive it: only a secured archive is copied, since
/// it has to be decrypted. Its files belong to the decrypted copy, and so stay there if mapped.
class MemorySource : public ComponentSource {
public:
    /// @throws InvalidArgumentsException for a buffer without a name or without its bytes, or two
    ///         buffers of one name; ModelMetaDataException if there is no manifest.
    explicit MemorySource(const std::vector<PackageBuffer>& buffers);
    /// A package in a tar archive, which is secured if `keys` has an archive key.
    /// @throws Exception as readArchivedPackage() and DecryptedArchive do, and
    ///         InvalidArgumentsException for a null pointer.
    MemorySource(const void* archive, uint64 size, const PackageKeys& keys);

    String name() const override;
    /// The path as written: there is no directory to join it to.
    String resolve(const String& path) const override;
    bool contains(const String& path) const override;
    /// @throws FileException, with the component's path, if the package does not hold it.
    std::unique_ptr<StoredBytes> open(const NetworkComponentEntry& component) const override;
    const SealedPackage* sealed() const noexcept override;

    /// "manifest.json".
    const PackageBuffer& manifest() const;

private:
    std::map<std::string, PackageBuffer> files_;  // by packagePath()
    std::optional<SealedPackage> sealed_;
};

/// Reads the manifest of a package in memory, and sets the keys of its components. Loads take the
/// components from the source, as long as that exists.
/// @throws Exception with the status of ModelMetadata::loadFromMemory if that fails.
std::shared_ptr<ModelMetadata> readMetadata(const std::shared_ptr<const MemorySource>& source,
                                            const PackageKeys& keys);

}  // namespace VelmoraQuavin::internal
