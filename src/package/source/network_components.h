#pragma once

#include <vector>

#include "package/source/component_source.h"
#include "quavin/metadata.h"

namespace VelmoraQuavin::internal {

/// A component of a network: where it is, and how to read it.
struct NetworkComponentEntry {
    String resolvedPath;    ///< The path as the component's source resolves it.
    String kind;            ///< ComponentKind::File or ComponentKind::SecuredFile.
    String path;            ///< As the manifest has it.
    Encryption encryption;  ///< The key of a secured component.

    bool isSecured() const { return kind == ComponentKind::SecuredFile; }
};

/// The two components of a network and where to read them from, which has to outlive this.
struct NetworkComponents {
    const ComponentSource& source;
    NetworkComponentEntry topology;
    NetworkComponentEntry weights;  ///< Without a path for a network without constants.

    bool areSecured() const { return topology.isSecured() || weights.isSecured(); }
};

/// The plain and secured files among a target's components, in order. The others are skipped:
/// a component's name alone says what it is.
std::vector<NetworkComponentEntry> collectNetworkComponents(
    const std::vector<ModelComponent>& components, const ComponentSource& source);

/// Whether the first two entries can be read as topology and weights.
/// @return INVALID_MODEL_PATH or INVALID_WEIGHTS_PATH if not.
QuavinStatus checkNetworkComponents(const std::vector<NetworkComponentEntry>& entries);

/// A component opened for reading. What is secured is decrypted in the memory that it is read into.
class ComponentReader {
public:
    /// @throws FileException if the component cannot be opened, or is secured and too large.
    ComponentReader(const ComponentSource& source, const NetworkComponentEntry& component);

    /// Bytes that read() needs room for.
    uint64 size() const { return stored_->size(); }
    /// Reads the component, once.
    /// @return bytes of content; the rest of the buffer is zeros.
    /// @throws FileException if reading or decrypting fails. A secured component may have left
    ///         plaintext in the buffer, which the caller wipes in any case.
    uint64 read(char* buffer);

private:
    uint64 decrypt(char* buffer) const;

    const NetworkComponentEntry& component_;
    std::unique_ptr<StoredBytes> stored_;
};

}  // namespace VelmoraQuavin::internal
