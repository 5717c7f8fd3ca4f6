#pragma once

#include <rapidjson/document.h>

#include "core/text_tools.h"
#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// The member `key` of a JSON value; null where the value is no object or has no such member.
inline const rapidjson::Value* findMember(const rapidjson::Value& object, const char* key) {
    if (!object.IsObject()) {
        return nullptr;
    }
    const auto member = object.FindMember(key);
    return member == object.MemberEnd() ? nullptr : &member->value;
}

/// The member `key` as an object; null where it is absent or something else.
inline const rapidjson::Value* findObject(const rapidjson::Value& object, const char* key) {
    const rapidjson::Value* member = findMember(object, key);
    return member != nullptr && member->IsObject() ? member : nullptr;
}

/// The member `key` as an array; null where it is absent or something else.
inline const rapidjson::Value* findArray(const rapidjson::Value& object, const char* key) {
    const rapidjson::Value* member = findMember(object, key);
    return member != nullptr && member->IsArray() ? member : nullptr;
}

/// Stores the member `key` into `target`, up to its first zero character, where it is a string.
/// @return whether it is.
inline bool readString(const rapidjson::Value& object, const char* key, String& target) {
    const rapidjson::Value* member = findMember(object, key);
    if (member == nullptr || !member->IsString()) {
        return false;
    }
    target = untilZeroByte({member->GetString(), member->GetStringLength()});
    return true;
}

/// Stores the member `key` into `target` where it is a whole number of 32 bits.
inline void readInt(const rapidjson::Value& object, const char* key, std::int32_t& target) {
    const rapidjson::Value* member = findMember(object, key);
    if (member != nullptr && member->IsInt()) {
        target = member->GetInt();
    }
}

}  // namespace VelmoraQuavin::internal
