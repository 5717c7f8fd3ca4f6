#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace VelmoraQuavin::internal {

/// Decodes base64 of the standard alphabet, strictly: padded, without line breaks, and with the
/// unused bits of the last character zero.
/// @return nothing if `text` is anything else.
std::optional<std::string> decodeBase64(std::string_view text);

/// As above, except that line breaks are skipped, wherever they are.
/// @param bytes an empty string that receives the result. After a refusal it holds what was decoded
///        until then; for secrets, wiping it leaves no copy behind.
/// @return whether `text` is accepted.
bool decodeBase64Lines(std::string_view text, std::string& bytes);

/// Encodes without line breaks, padded.
std::string encodeBase64(std::string_view bytes);

}  // namespace VelmoraQuavin::internal
