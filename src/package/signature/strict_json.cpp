#include "package/signature/strict_json.h"

#include <rapidjson/memorystream.h>

#include <algorithm>
#include <vector>

#include "package/json/value_count.h"
#include "text/unicode.h"

namespace VelmoraQuavin::internal {
namespace {

bool hasTwins(const JsonValue& object) {
    std::vector<std::string_view> names;
    names.reserve(object.MemberCount());
    for (const auto& member : object.GetObject()) {
        names.push_back(textOf(member.name));
    }
    std::sort(names.begin(), names.end());
    return std::adjacent_find(names.begin(), names.end()) != names.end();
}

// Does not recurse, because texts may be nested deeper than the thread's stack.
bool namesMemberTwice(const JsonValue& root) {
    std::vector<const JsonValue*> rest = {&root};
    while (!rest.empty()) {
        const JsonValue& value = *rest.back();
        rest.pop_back();
        if (value.IsArray()) {
            for (const JsonValue& element : value.GetArray()) {
                rest.push_back(&element);
            }
        } else if (value.IsObject()) {
            if (hasTwins(value)) {
                return true;
            }
            for (const auto& member : value.GetObject()) {
                rest.push_back(&member.value);
            }
        }
    }
    return false;
}

}  // namespace

std::string_view textOf(const JsonValue& string) {
    return {string.GetString(), string.GetStringLength()};
}

const char* parseStrictly(std::string_view text, JsonDocument& document) {
    if (hasMoreValues(text, kMostSignatureValues)) {
        return "it has too many values";
    }
    rapidjson::MemoryStream stream(text.data(), text.size());
    // Iterative for the same reason as above.
    document.ParseStream<rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag,
                         rapidjson::UTF8<>>(stream);
    // The parser also stops at a zero byte.
    if (document.HasParseError() || stream.Tell() != text.size()) {
        return "it is not JSON in UTF-8";
    }
    if (!document.IsObject()) {
        return "it is not an object";
    }
    return namesMemberTwice(document) ? "an object has two members of one name" : nullptr;
}

bool hasOnly(const JsonValue& object, std::initializer_list<std::string_view> members) {
    const auto all = object.GetObject();
    return std::all_of(all.begin(), all.end(), [&members](const auto& member) {
        return std::find(members.begin(), members.end(), textOf(member.name)) != members.end();
    });
}

const JsonValue* findPresent(const JsonValue& object, const char* key) {
    const JsonValue* const member = findMember(object, key);
    return member == nullptr || member->IsNull() ? nullptr : member;
}

std::optional<std::string_view> findString(const JsonValue& object, const char* key) {
    const JsonValue* const member = findMember(object, key);
    return member != nullptr && member->IsString() ? std::optional(textOf(*member)) : std::nullopt;
}

bool isString(const JsonValue& object, const char* key, std::string_view expected) {
    return findString(object, key) == expected;
}

}  // namespace VelmoraQuavin::internal
