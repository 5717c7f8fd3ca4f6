#pragma once

#include <optional>
#include <vector>

#include "package/source/component_source.h"
#include "quavin/metadata.h"

namespace VelmoraQuavin::internal {

/// A component of a network: where it is, and how to read it.
struct NetworkComponentEntry {
    String resolvedPath;    ///< The path as the component's source resolves it.
    String kind;            ///< ComponentKind::File or ComponentKind::SecuredFile.
    String path;            ///< The path as written in the manifest.
    Encryption encryption;  ///< The key of a secured component.

    bool isSecured() const { return kind == ComponentKind::SecuredFile; }
};

/// The two components of a network and the source to read them from, which must outlive this.
struct NetworkComponents {
    const ComponentSource& source;
    NetworkComponentEntry topology;
    NetworkComponentEntry weights;  ///< Has no path if the network has no constants.

    /// Whether a component's content is secret: it is secured, or the whole package is.
    bool isSecret(const NetworkComponentEntry& component) const {
        return component.isSecured() || source.sealed() != nullptr;
    }
    bool areSecret() const { return isSecret(topology) || isSecret(weights); }
};

/// Whether a component is one of a network's two files. Its name alone determines its kind.
inline bool isNetworkFile(const ModelComponent& component) {
    return component.name == ComponentKind::File || component.name == ComponentKind::SecuredFile;
}

/// The plain and secured files among a target's components, in order. Others are skipped.
std::vector<NetworkComponentEntry> collectNetworkComponents(
    const std::vector<ModelComponent>& components, const ComponentSource& source);

/// Whether the first two entries can be read as topology and weights.
/// @return INVALID_MODEL_PATH or INVALID_WEIGHTS_PATH if not.
QuavinStatus checkNetworkComponents(const std::vector<NetworkComponentEntry>& entries);

/// A component opened for reading. A secured one is decrypted in place after reading.
class ComponentReader {
public:
    /// @param component must outlive this.
    /// @throws FileException if the component cannot be opened, or is secured and too large.
    /// @throws SignatureException if the package is signed and this component is not, or is not
    ///         there.
    ComponentReader(const ComponentSource& source, const NetworkComponentEntry& component);
    ComponentReader(const ComponentSource& source, NetworkComponentEntry&& component) = delete;

    /// The number of bytes that read() needs room for.
    uint64 size() const { return stored_->size(); }
    /// Reads the component; may be called once.
    /// @return the number of bytes of content; the rest of the buffer is zeros.
    /// @throws FileException if reading or decrypting fails. A secured component may have left
    ///         plaintext in the buffer, which the caller must wipe in any case.
    /// @throws SignatureException if the component is not what was signed.
    uint64 read(char* buffer);
    /// Whether map() is as good as read(), whatever the host asked for.
    bool isInMemory() const { return !component_.isSecured() && stored_->isInMemory(); }
    /// The component without reading it; may be called once, before read().
    /// @return nothing if it has to be read, as a secured one always has.
    /// @throws FileException if mapping fails.
    /// @throws SignatureException as read() does.
    std::optional<MappedBytes> map();

    /// The first half of read(): the bytes as they are stored; may be called once.
    /// @throws FileException if reading fails.
    /// @throws SignatureException as read() does.
    void readStored(char* buffer);
    /// The second half of read(): decrypts a secured component in place; does nothing for a plain
    /// one.
    /// @return as read() does.
    /// @throws FileException if decrypting fails; the buffer then is as after read().
    uint64 decrypt(char* buffer) const;

private:
    const NetworkComponentEntry& component_;
    std::unique_ptr<StoredBytes> stored_;
};

}  // namespace VelmoraQuavin::internal
