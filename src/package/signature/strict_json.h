#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "package/json/json_access.h"

namespace VelmoraQuavin::internal {

/// The largest number of values in a JSON text of a signature, lists and objects included.
constexpr uint64 kMostSignatureValues = uint64{1} << 20;

/// Parses a JSON text that every reader understands alike: UTF-8, one object, no member twice in an
/// object.
/// @param document receives the object.
/// @return why `text` is refused; null if it is not.
const char* parseStrictly(std::string_view text, JsonDocument& document);

/// Whether all members of an object are among those listed.
bool hasOnly(const JsonValue& object, std::initializer_list<std::string_view> members);

/// The text of a string. Valid as long as its document.
std::string_view textOf(const JsonValue& string);

/// The member `key`; null if there is none. A JSON null counts as absent, as in JSON written from
/// optional fields.
const JsonValue* findPresent(const JsonValue& object, const char* key);

/// The member `key` of an object, if it is a string. Valid as long as its document.
std::optional<std::string_view> findString(const JsonValue& object, const char* key);

/// Whether the member `key` is this string.
bool isString(const JsonValue& object, const char* key, std::string_view expected);

}  // namespace VelmoraQuavin::internal
