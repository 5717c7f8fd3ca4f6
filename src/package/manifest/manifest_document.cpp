#include "package/manifest/manifest_document.h"

#include <rapidjson/memorystream.h>

namespace VelmoraQuavin::internal {
namespace {

constexpr std::string_view kLeadingBlanks = " \t\r\n";

// One of three characters stands in front of every value but the first. The count is exact as far
// as the text is JSON, and parsing gets no further.
bool hasTooManyValues(std::string_view text) {
    uint64 values = 1;
    bool inString = false;
    for (std::size_t i = 0; i < text.size() && values <= kMostManifestValues; ++i) {
        const char character = text[i];
        if (inString && character == '\\') {
            ++i;  // whatever follows does not end the string
        } else if (character == '"') {
            inString = !inString;
        } else if (!inString && (character == ',' || character == '[' || character == '{')) {
            ++values;
        }
    }
    return values > kMostManifestValues;
}

}  // namespace

std::size_t byteOrderMarkSize(std::string_view text) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    return text.substr(0, kByteOrderMark.size()) == kByteOrderMark ? kByteOrderMark.size() : 0;
}

ManifestParse parseManifest(std::string_view text, JsonDocument& document) {
    if (text.size() > kLargestManifest) {
        return {ManifestFault::kTooLarge};
    }
    if (hasTooManyValues(text)) {
        return {ManifestFault::kTooManyValues};
    }
    // The JSON library would also take a part of a mark.
    const std::size_t begin = text.find_first_not_of(kLeadingBlanks, byteOrderMarkSize(text));
    if (begin == std::string_view::npos) {
        return {ManifestFault::kEmpty};
    }
    text.remove_prefix(begin);
    rapidjson::MemoryStream stream(text.data(), text.size());
    // Iterative, so that nesting costs memory and not the thread's stack.
    document.ParseStream<rapidjson::kParseIterativeFlag, rapidjson::UTF8<>>(stream);
    if (document.HasParseError()) {
        return {ManifestFault::kNoJson, begin + document.GetErrorOffset()};
    }
    if (stream.Tell() != text.size()) {
        // The parser also stops at a zero byte.
        return {ManifestFault::kZeroByte, begin + stream.Tell()};
    }
    return {document.IsObject() ? ManifestFault::kNone : ManifestFault::kNoObject};
}

}  // namespace VelmoraQuavin::internal
