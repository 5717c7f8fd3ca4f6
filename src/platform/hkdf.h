#pragma once

#include <cstddef>
#include <string_view>

namespace VelmoraQuavin::internal::platform {

/// Derives a key with HKDF (RFC 5869) over SHA-256; on POSIX only.
/// @param secret the input keying material; not empty.
/// @param salt may be empty, like `info`.
/// @param key receives `size` bytes, at most 255 * 32.
/// @return whether it succeeded; if not, `key` holds nothing of use.
bool deriveHkdfSha256(const unsigned char* secret, std::size_t secretSize, std::string_view salt,
                      std::string_view info, unsigned char* key, std::size_t size) noexcept;

}  // namespace VelmoraQuavin::internal::platform
