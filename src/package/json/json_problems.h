#pragma once

#include <rapidjson/error/error.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "package/json/json_access.h"

namespace VelmoraQuavin::internal {

/// The position of the byte at `offset`, as "line 3, column 7". Columns count UTF-8 characters, not
/// including a byte order mark.
std::string textPosition(std::string_view text, std::size_t offset);

/// Where and why a text is not valid JSON, without quoting any of it.
std::string parseProblem(std::string_view text, std::size_t offset, rapidjson::ParseErrorCode code);

/// "an array", "a string" and so on.
std::string jsonKind(const JsonValue& value);

/// The members of an object, as `the members "a", "b"` or "no members".
std::string memberNames(const JsonValue& object);

}  // namespace VelmoraQuavin::internal
