#include "package/json/json_problems.h"

#include <rapidjson/error/en.h>

#include <algorithm>

#include "core/diagnostics.h"
#include "package/manifest/manifest_document.h"
#include "text/unicode.h"

namespace VelmoraQuavin::internal {

std::string textPosition(std::string_view text, std::size_t offset) {
    const std::string_view before = text.substr(0, offset);
    const auto line = 1 + std::count(before.begin(), before.end(), '\n');
    const std::size_t lastEnd = before.rfind('\n');
    const std::string_view start =
        before.substr(lastEnd == std::string_view::npos ? byteOrderMarkSize(before) : lastEnd + 1);
    const auto column = 1 + std::count_if(start.begin(), start.end(), [](char byte) {
                            return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
                        });
    return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

std::string parseProblem(std::string_view text, std::size_t offset,
                         rapidjson::ParseErrorCode code) {
    std::string_view reason = rapidjson::GetParseError_En(code);
    reason = reason.substr(0, reason.find_last_not_of('.') + 1);
    return textPosition(text, offset) + ": " + std::string(reason);
}

std::string jsonKind(const JsonValue& value) {
    switch (value.GetType()) {
        case rapidjson::kNullType:
            return "null";
        case rapidjson::kFalseType:
        case rapidjson::kTrueType:
            return "a boolean";
        case rapidjson::kObjectType:
            return "an object";
        case rapidjson::kArrayType:
            return "an array";
        case rapidjson::kStringType:
            return "a string";
        case rapidjson::kNumberType:
            return "a number";
    }
    return "something else";
}

std::string memberNames(const JsonValue& object) {
    NameList names;
    for (const auto& member : object.GetObject()) {
        names.add({member.name.GetString(), member.name.GetStringLength()});
    }
    return names.empty() ? "no members" : "the members " + names.text();
}

}  // namespace VelmoraQuavin::internal
