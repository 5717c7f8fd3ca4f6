#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "quavin/encryption.h"
#include "quavin/files.h"
#include "quavin/metadata.h"
#include "quavin/text.h"

namespace VelmoraQuavin::internal {

struct NetworkComponentEntry;

/// Bytes that are already in memory, and stay there as long as `data` or a copy of it.
struct MappedBytes {
    std::shared_ptr<const char> data;  ///< May be null if there are no bytes.
    uint64 size;
};

/// The stored bytes of one component, which can be read or mapped once.
class StoredBytes {
public:
    StoredBytes() = default;
    StoredBytes(const StoredBytes&) = delete;
    StoredBytes& operator=(const StoredBytes&) = delete;
    virtual ~StoredBytes() = default;

    virtual uint64 size() const = 0;
    /// Reads size() bytes.
    /// @throws FileException "File error!" if that fails.
    virtual void read(char* buffer) = 0;
    /// The same bytes without reading them into a buffer. They may change, or end the process when
    /// touched, if what they come from does: see platform::MappedFile.
    /// @return nothing if they can only be read.
    /// @throws FileException "File error!" if mapping fails.
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
    /// @throws FileException "File error!" if the component cannot be opened.
    virtual std::unique_ptr<StoredBytes> open(const NetworkComponentEntry& component) const = 0;
    /// @return null if the package is not secured as a whole.
    virtual const SealedPackage* sealed() const noexcept { return nullptr; }
};

/// A package in a directory. Paths are joined to the directory as written.
class DirectorySource : public ComponentSource {
public:
    explicit DirectorySource(Filepath directory);

    String name() const override;
    String resolve(const String& path) const override;
    std::unique_ptr<StoredBytes> open(const NetworkComponentEntry& component) const override;

private:
    Filepath directory_;
};

/// The source of a package's components. It opens none if the package was in memory and is gone.
std::shared_ptr<const ComponentSource> makeComponentSource(const ModelMetadata& metadata);

}  // namespace VelmoraQuavin::internal
