#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "tools/quavin/io/wiped_bytes.h"
#include "tools/quavin/package/key.h"

namespace quavin_tool {

/// The secured form of a file: sixteen random bytes, and the AES-128-CBC ciphertext of the file
/// with PKCS#7 padding.
/// @throws InvalidArgumentsException if the secured form would be 4 GiB or larger.
WipedBytes encrypt(std::string_view plain, const Key& key);

/// The plain form, padding included.
/// @param secured as returned by encrypt().
/// @param key sixteen bytes.
/// @param name the file's name, for messages.
/// @throws InvalidArgumentsException if no secured file has such a length.
WipedBytes decrypt(const WipedBytes& secured, const unsigned char* key, const std::string& name);

/// The number of bytes of PKCS#7 padding at the end of a plain form, if there is any.
std::optional<std::uint64_t> paddingOf(std::string_view plain);

/// Why a secured file cannot have a length; empty if it can.
std::string securedLengthProblem(std::uint64_t length);

}  // namespace quavin_tool
