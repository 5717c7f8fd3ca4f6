#pragma once

#include <rapidjson/document.h>

#include <cstdint>
#include <cstdlib>
#include <new>

#include "quavin/text.h"
#include "text/unicode.h"

namespace VelmoraQuavin::internal {

/// Allocator for JSON documents that throws std::bad_alloc: rapidjson's own returns null, and its
/// parser writes through that.
class JsonAllocator {
public:
    static const bool kNeedFree = true;  // required of a rapidjson allocator

    void* Malloc(std::size_t size) { return size == 0 ? nullptr : require(std::malloc(size)); }
    void* Realloc(void* original, std::size_t /*originalSize*/, std::size_t size) {
        if (size == 0) {
            std::free(original);
            return nullptr;
        }
        return require(std::realloc(original, size));
    }
    static void Free(void* memory) { std::free(memory); }

private:
    static void* require(void* memory) {
        if (memory == nullptr) {
            throw std::bad_alloc();
        }
        return memory;
    }
};

using JsonPool = rapidjson::MemoryPoolAllocator<JsonAllocator>;
using JsonDocument = rapidjson::GenericDocument<rapidjson::UTF8<>, JsonPool, JsonAllocator>;
using JsonValue = JsonDocument::ValueType;

/// The member `key` of a JSON value; null if the value is not an object or has no such member.
inline const JsonValue* findMember(const JsonValue& object, const char* key) {
    if (!object.IsObject()) {
        return nullptr;
    }
    const auto member = object.FindMember(key);
    return member == object.MemberEnd() ? nullptr : &member->value;
}

/// The member `key` as an object; null if it is absent or something else.
inline const JsonValue* findObject(const JsonValue& object, const char* key) {
    const JsonValue* member = findMember(object, key);
    return member != nullptr && member->IsObject() ? member : nullptr;
}

/// The member `key` as an array; null if it is absent or something else.
inline const JsonValue* findArray(const JsonValue& object, const char* key) {
    const JsonValue* member = findMember(object, key);
    return member != nullptr && member->IsArray() ? member : nullptr;
}

/// Stores the member `key` into `target`, up to its first zero character, if it is a string.
/// @return whether it is a string.
inline bool readString(const JsonValue& object, const char* key, String& target) {
    const JsonValue* member = findMember(object, key);
    if (member == nullptr || !member->IsString()) {
        return false;
    }
    target = untilZeroByte({member->GetString(), member->GetStringLength()});
    return true;
}

/// Stores the member `key` into `target` if it is a 32-bit integer.
/// @return whether it is one.
inline bool readInt(const JsonValue& object, const char* key, std::int32_t& target) {
    const JsonValue* member = findMember(object, key);
    if (member == nullptr || !member->IsInt()) {
        return false;
    }
    target = member->GetInt();
    return true;
}

}  // namespace VelmoraQuavin::internal
