#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "engine/cache/cache_name.h"
#include "engine/cache/entry_buffer.h"
#include "engine/cache/entry_header.h"
#include "quavin/encryption.h"

namespace VelmoraQuavin::internal {

/// What protects an entry: a content without its seal, or with that of another entry, is not used.
/// Any thread may use it.
class CacheSeal {
public:
    CacheSeal() = default;
    CacheSeal(const CacheSeal&) = delete;
    CacheSeal& operator=(const CacheSeal&) = delete;
    virtual ~CacheSeal() = default;

    virtual SealKind kind() const noexcept = 0;
    /// An empty buffer for content to be sealed with this.
    /// @throws std::bad_alloc if memory runs out.
    EntryBuffer makeBuffer(std::size_t capacity = 0) const {
        return EntryBuffer(kind() == SealKind::kSecret ? EntryBuffer::Content::kSecret
                                                       : EntryBuffer::Content::kPlain,
                           capacity);
    }
    /// Seals content, in place.
    /// @param name the entry's name.
    /// @param start the entry's header up to the seal, which is sealed with the content.
    /// @param value receives the seal.
    /// @return whether it succeeded; if not, the content is unusable.
    /// @throws std::bad_alloc if memory runs out, as does open().
    virtual bool close(const EntryName& name, const HeaderStart& start, unsigned char* content,
                       std::size_t size, SealValue& value) const = 0;
    /// Undoes close(), in place.
    /// @return whether the seal belongs to exactly this name, start and content; if not, the
    ///         content is unusable.
    virtual bool open(const EntryName& name, const HeaderStart& start, unsigned char* content,
                      std::size_t size, const SealValue& value) const = 0;
};

/// For plain packages: detects damage. Whoever can write into the cache's directory can forge it.
std::unique_ptr<CacheSeal> makeChecksumSeal();

/// Whether this system can cache what secured packages contain.
bool canSealSecrets() noexcept;
/// For secured packages: encrypts the content and detects any change to it.
/// @param keys the keys of the package's secured components, which are copied; always in the same
///        order.
/// @return null unless canSealSecrets(), or if there are no keys.
std::unique_ptr<CacheSeal> makeSecretSeal(const std::vector<const Encryption*>& keys);

}  // namespace VelmoraQuavin::internal
