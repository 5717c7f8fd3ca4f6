#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "tools/quavin/io/wiped_bytes.h"
#include "tools/quavin/package/key.h"

namespace quavin_tool {

/// The secured form of a file: sixteen random bytes, and the AES-128-CBC ciphertext of the file
/// with PKCS#7 padding.
/// @throws InvalidArgumentsException for a file whose secured form has 4 GiB or more.
WipedBytes encrypt(std::string_view plain, const Key& key);

/// The plain form, padding included.
/// @param secured as encrypt() makes it.
/// @param key sixteen bytes.
/// @param name of the file, for messages.
/// @throws InvalidArgumentsException where the length is none of a secured file.
WipedBytes decrypt(const WipedBytes& secured, const unsigned char* key, const std::string& name);

/// The bytes of PKCS#7 padding at the end of a plain form; nothing where there is none.
std::optional<std::uint64_t> paddingOf(std::string_view plain);

/// Why a length cannot be that of a secured file; empty where it can.
std::string securedLengthProblem(std::uint64_t length);

}  // namespace quavin_tool
