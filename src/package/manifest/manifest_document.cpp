#include "package/manifest/manifest_document.h"

#include <rapidjson/memorystream.h>

#include "package/json/value_count.h"
#include "text/unicode.h"

namespace VelmoraQuavin::internal {
namespace {

constexpr std::string_view kLeadingBlanks = " \t\r\n";

}  // namespace

ManifestParse parseManifest(std::string_view text, JsonDocument& document) {
    if (text.size() > kLargestManifest) {
        return {ManifestFault::kTooLarge};
    }
    if (hasMoreValues(text, kMostManifestValues)) {
        return {ManifestFault::kTooManyValues};
    }
    // rapidjson would also accept part of a byte order mark.
    const std::size_t begin = text.find_first_not_of(kLeadingBlanks, byteOrderMarkSize(text));
    if (begin == std::string_view::npos) {
        return {ManifestFault::kEmpty};
    }
    text.remove_prefix(begin);
    rapidjson::MemoryStream stream(text.data(), text.size());
    // Iterative, so that deep nesting uses heap memory instead of the thread's stack.
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
