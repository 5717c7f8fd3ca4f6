#pragma once

/// @file
/// Packages that are in memory instead of in a directory: their keys and their files.

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "quavin/encryption.h"
#include "quavin/export.h"
#include "quavin/metadata.h"
#include "quavin/text.h"

namespace VelmoraQuavin {

namespace internal {
struct PackageKeysAccess;
}

/// The AES-128 keys of a package's secured parts: of the archive as a whole, and of its components.
///
/// A value type that owns copies of its keys and overwrites them when it is destroyed or they are
/// replaced; moving from one leaves it without keys. Keys are never streamed, compared or logged.
///
/// @code
/// PackageKeys keys;
/// keys.setComponentKey(key);
/// status = client.getModel(archive.data(), archive.size(), keys, model, QuavinModelType::Openvino,
///                          EngineOptions());
/// @endcode
class QUAVIN_API PackageKeys {
public:
    /// No keys: everything is plain.
    PackageKeys();
    PackageKeys(const PackageKeys& other);                 ///< Copies the keys.
    PackageKeys& operator=(const PackageKeys& other);      ///< Copies the keys.
    PackageKeys(PackageKeys&& other) noexcept;             ///< Leaves `other` without keys.
    PackageKeys& operator=(PackageKeys&& other) noexcept;  ///< Leaves `other` without keys.
    /// Overwrites the keys.
    ~PackageKeys();

    /// Sets the key of the archive, which is then expected to be secured as a whole. Not used for
    /// packages from buffers.
    /// @param key sixteen bytes, which are copied.
    /// @throws InvalidArgumentsException for a null pointer.
    void setArchiveKey(const unsigned char* key);
    /// Sets the key of every secured component that has no key of its own.
    /// @param key sixteen bytes, which are copied.
    /// @throws InvalidArgumentsException for a null pointer.
    void setComponentKey(const unsigned char* key);
    /// Sets the key of one secured component, replacing an earlier one for the same path.
    /// @param path the component's "path" in the manifest; "/" and "\" are the same. A key for a
    ///        path that no secured component has is not used.
    /// @param key sixteen bytes, which are copied.
    /// @throws InvalidArgumentsException for a null pointer.
    void setComponentKey(const String& path, const unsigned char* key);

    /// Sets the keys of the secured components of all targets. Components for which there is no key
    /// stay as they are.
    void applyTo(ModelMetadata& metadata) const;

private:
    friend struct internal::PackageKeysAccess;

    // Null if there is none.
    const Encryption* keyFor(const String& path) const;

    std::optional<Encryption> archiveKey_;
    std::optional<Encryption> componentKey_;
    std::vector<std::pair<String, Encryption>> keysByPath_;
};

/// One file of a package that is in memory. A value type; copies share the bytes.
struct PackageBuffer {
    /// The address that weights used in place must be a multiple of; others are copied.
    static constexpr uint64 kWeightsAlignment = 16;

    /// "manifest.json", or a component's "path" as the manifest writes it; "/" and "\" are the
    /// same.
    String name;
    const void* data = nullptr;  ///< The bytes; may be null if there are none.
    uint64 size = 0;             ///< The number of bytes at `data`.
    /// Null if the bytes may be freed when the call returns. Otherwise it shares their ownership,
    /// and they must not change: plain weights are used in place, without a copy. The model and its
    /// clones may then hold the owner until the last of them is destroyed, and release it on any
    /// thread.
    std::shared_ptr<const void> owner;
};

}  // namespace VelmoraQuavin
