#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "quavin/encryption.h"
#include "quavin/files.h"
#include "quavin/metadata.h"
#include "quavin/text.h"

namespace VelmoraQuavin::internal {

struct ManifestDigest;
struct NetworkComponentEntry;
struct TrustedKeys;

/// Bytes that are already in memory, and stay there as long as `data` or a copy of it.
struct MappedBytes {
    std::shared_ptr<const char> data;  ///< May be null if there are no bytes.
    uint64 size;
};

/// The stored bytes of one component, which can be read once, from the beginning to the end, or
/// mapped once.
class StoredBytes {
public:
    StoredBytes() = default;
    StoredBytes(const StoredBytes&) = delete;
    StoredBytes& operator=(const StoredBytes&) = delete;
    virtual ~StoredBytes() = default;

    virtual uint64 size() const = 0;
    /// Reads the next `count` bytes, of size() in all.
    /// @throws FileException "File error!" if that fails.
    /// @throws SignatureException with the last byte, if the package is signed and the component is
    ///         not what was signed.
    virtual void read(char* buffer, uint64 count) = 0;
    /// The same bytes without reading them into a buffer. They may change, or end the process when
    /// touched, if what they come from does: see platform::MappedFile.
    /// @return nothing if they can only be read.
    /// @throws FileException "File error!" if mapping fails.
    /// @throws SignatureException as read() does.
    virtual std::optional<MappedBytes> map() { return std::nullopt; }
    /// Whether map() costs nothing and gives bytes that do not change, so that there is no reason
    /// to read them.
    virtual bool isInMemory() const noexcept { return false; }
};

/// A package that is secured as a whole: what its source holds is secret, even in plain components.
struct SealedPackage {
    Encryption key;
    std::string_view stored;  ///< The package as it is stored.
};

/// Where the bytes of a package's components come from. May be used from any thread.
class ComponentSource {
public:
    ComponentSource() = default;
    ComponentSource(const ComponentSource&) = delete;
    ComponentSource& operator=(const ComponentSource&) = delete;
    virtual ~ComponentSource() = default;

    /// The package's name in messages: its directory if it has one.
    virtual String name() const = 0;
    /// Resolves the path of a component; for a file, the result is its location.
    virtual String resolve(const String& path) const = 0;
    /// Whether there is something at the path of a component. It may still be impossible to open.
    /// @throws std::range_error "bad conversion" if the path is not UTF-8.
    virtual bool contains(const String& path) const = 0;
    /// @throws FileException "File error!" if the component cannot be opened.
    virtual std::unique_ptr<StoredBytes> open(const NetworkComponentEntry& component) const = 0;
    /// @return null if the package is not secured as a whole.
    virtual const SealedPackage* sealed() const noexcept { return nullptr; }
    /// The trusted keys that were asked whether one of them signed the package.
    /// @return null if none were.
    virtual std::shared_ptr<const TrustedKeys> verifiedBy() const noexcept { return nullptr; }
    /// Whether the package is, and components are read only if they are, what a trusted key signed.
    bool isVerified() const noexcept { return verifiedBy() != nullptr; }
};

/// A manifest that was verified, and the trusted keys that were asked; null while there is none.
struct VerifiedManifest {
    std::shared_ptr<const TrustedKeys> keys;
    std::shared_ptr<const ManifestDigest> manifest;
};

/// A package in a directory. Paths are joined to the directory as written.
class DirectorySource : public ComponentSource {
public:
    explicit DirectorySource(Filepath directory);

    String name() const override;
    String resolve(const String& path) const override;
    bool contains(const String& path) const override;
    std::unique_ptr<StoredBytes> open(const NetworkComponentEntry& component) const override;

private:
    Filepath directory_;
};

/// The source of a package's components. If the package was in memory and is gone, it opens none.
/// While keys are trusted, it is a SignedSource, except for a package that is gone.
/// @param earlier what is known of a package that is gone: if the manifest was verified with the
///        keys that are trusted now, it needs no signature.
/// @throws FileException if the package is gone and the manifest was not verified so, while keys
///         are trusted.
/// @throws Exception as SignedSource does.
std::shared_ptr<const ComponentSource> makeComponentSource(const ModelMetadata& metadata,
                                                           const VerifiedManifest& earlier = {});

}  // namespace VelmoraQuavin::internal
