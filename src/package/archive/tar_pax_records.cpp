#include "package/archive/tar_pax_records.h"

#include <charconv>

namespace VelmoraQuavin::internal {
namespace {

std::optional<uint64> parseDecimal(std::string_view text) {
    uint64 value = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || rest != end) {
        return std::nullopt;
    }
    return value;
}

// Takes "KEY=VALUE" off the front of `text`.
std::optional<std::string_view> takeRecord(std::string_view& text) {
    const std::size_t blank = text.find(' ');
    const std::optional<uint64> length = parseDecimal(text.substr(0, blank));
    // There must be at least one character between the space and the line feed.
    if (blank == std::string_view::npos || !length.has_value() || *length > text.size() ||
        *length < blank + 3 || text[*length - 1] != '\n') {
        return std::nullopt;
    }
    const std::string_view record = text.substr(blank + 1, *length - blank - 2);
    text.remove_prefix(*length);
    return record;
}

bool beginsWith(std::string_view text, std::string_view beginning) {
    return text.substr(0, beginning.size()) == beginning;
}

bool apply(std::string_view key, std::string_view value, PaxRecords& records) {
    if (key == "path") {
        records.path = value.empty() ? std::nullopt : std::optional<std::string>(value);
        return value.find('\0') == std::string_view::npos;
    }
    if (key == "size") {
        records.size = parseDecimal(value);
        return value.empty() || records.size.has_value();
    }
    if (beginsWith(key, "GNU.sparse.")) {
        records.sparse = true;
    }
    return true;
}

}  // namespace

std::optional<PaxRecords> parsePaxRecords(std::string_view text) {
    PaxRecords records;
    while (!text.empty()) {
        const std::optional<std::string_view> record = takeRecord(text);
        if (!record.has_value()) {
            return std::nullopt;
        }
        const std::size_t equals = record->find('=');
        if (equals == std::string_view::npos ||
            !apply(record->substr(0, equals), record->substr(equals + 1), records)) {
            return std::nullopt;
        }
    }
    return records;
}

}  // namespace VelmoraQuavin::internal
