#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "engine/cache/content_hash.h"

namespace VelmoraQuavin::internal {

/// What an entry of the cache is called: a hash over everything that the compiled network depends
/// on.
class EntryName {
public:
    explicit EntryName(const ContentHash::Digest& digest) : digest_(digest) {}

    const ContentHash::Digest& digest() const { return digest_; }
    /// 32 hexadecimal digits and ".quavin-network".
    std::string fileName() const;
    /// Whether a file can be an entry, going by its name.
    static bool isFileName(std::string_view name);

private:
    ContentHash::Digest digest_;
};

/// Builds the name of an entry out of parts. The same parts in the same order give the same name;
/// where one part ends and the next begins makes a difference. Parts are hashed where they are, not
/// copied.
class CacheName {
public:
    /// @param bytes may be null if `count` is 0.
    void add(const void* bytes, std::size_t count) noexcept;
    void add(std::string_view text) noexcept { add(text.data(), text.size()); }
    /// The name for the parts added so far.
    EntryName entry() const noexcept { return EntryName(hash_.digest()); }

private:
    ContentHash hash_;
};

}  // namespace VelmoraQuavin::internal
