#include "engine/cache/content_hash.h"

// Compiles the whole algorithm into this file: there is no library to link.
#define XXH_INLINE_ALL
#include <xxhash.h>

#include <cstring>

namespace VelmoraQuavin::internal {

struct ContentHash::State {
    XXH3_state_t xxh3;
};

ContentHash::ContentHash() : state_(std::make_unique<State>()) {
    XXH3_128bits_reset(&state_->xxh3);
}

ContentHash::ContentHash(ContentHash&& other) noexcept = default;
ContentHash& ContentHash::operator=(ContentHash&& other) noexcept = default;
ContentHash::~ContentHash() = default;

void ContentHash::add(const void* bytes, std::size_t count) noexcept {
    if (count != 0) {
        XXH3_128bits_update(&state_->xxh3, bytes, count);
    }
}

ContentHash::Digest ContentHash::digest() const noexcept {
    XXH128_canonical_t canonical;
    XXH128_canonicalFromHash(&canonical, XXH3_128bits_digest(&state_->xxh3));
    Digest digest{};
    static_assert(sizeof canonical.digest == sizeof digest);
    std::memcpy(digest.data(), canonical.digest, digest.size());
    return digest;
}

}  // namespace VelmoraQuavin::internal
