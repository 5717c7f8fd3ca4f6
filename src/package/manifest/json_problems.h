#pragma once

#include <rapidjson/error/error.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "package/manifest/json_access.h"

namespace VelmoraQuavin::internal {

/// "line 3, column 7" of the byte at `offset`. Columns count characters of UTF-8, and not the mark
/// in front of the text.
std::string textPosition(std::string_view text, std::size_t offset);

/// Where a text is no JSON, and why; nothing of the text.
std::string parseProblem(std::string_view text, std::size_t offset, rapidjson::ParseErrorCode code);

/// "an array", "a string" and so on.
std::string jsonKind(const JsonValue& value);

/// `the members "a", "b"`, or "no members", of an object.
std::string memberNames(const JsonValue& object);

}  // namespace VelmoraQuavin::internal
