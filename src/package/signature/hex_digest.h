#pragma once

#include <optional>
#include <string_view>

#include "platform/message_digest.h"
#include "text/hex.h"

namespace VelmoraQuavin::internal {

/// Reads what hexText() writes of a digest.
/// @return nothing for anything else, upper-case digits included.
std::optional<platform::Sha256Digest> readHexDigest(std::string_view text);

}  // namespace VelmoraQuavin::internal
