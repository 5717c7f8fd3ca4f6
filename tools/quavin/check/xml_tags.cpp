#include "tools/quavin/check/xml_tags.h"

#include <utf8.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <utility>

namespace quavin_tool {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
// "&#x10FFFF;", with room for some leading zeros.
constexpr std::size_t kLongestReference = 16;

// Removes and returns the text before the first of the given characters.
std::string_view takeUntil(std::string_view& text, std::string_view ends) {
    const std::size_t end = std::min(text.find_first_of(ends), text.size());
    const std::string_view taken = text.substr(0, end);
    text.remove_prefix(end);
    return taken;
}

void skipBlanks(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
}

// The length of a tag's inside: up to the first ">" outside quotes.
std::size_t lengthOfTag(std::string_view text) {
    char quote = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char character = text[i];
        if (quote != 0) {
            quote = character == quote ? '\0' : quote;
        } else if (character == '"' || character == '\'') {
            quote = character;
        } else if (character == '>') {
            return i;
        }
    }
    return std::string_view::npos;
}

// Appends the character that the text between "&" and ";" refers to.
bool appendReference(std::string_view reference, std::string& text) {
    constexpr std::array<std::pair<std::string_view, char>, 5> kNamed{
        {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};
    for (const auto& [name, character] : kNamed) {
        if (reference == name) {
            text += character;
            return true;
        }
    }
    if (reference.substr(0, 1) != "#") {
        return false;
    }
    const bool hexadecimal = reference.substr(0, 2) == "#x";
    reference.remove_prefix(hexadecimal ? 2 : 1);
    std::uint32_t character = 0;
    const char* const end = reference.data() + reference.size();
    const auto [stop, error] =
        std::from_chars(reference.data(), end, character, hexadecimal ? 16 : 10);
    if (error != std::errc() || stop != end || !utf8::internal::is_code_point_valid(character)) {
        return false;
    }
    utf8::unchecked::append(character, std::back_inserter(text));
    return true;
}

std::string withoutReferences(std::string_view value) {
    std::string text;
    while (!value.empty()) {
        text += takeUntil(value, "&");
        const std::size_t end = value.substr(0, kLongestReference).find(';');
        if (end != std::string_view::npos && appendReference(value.substr(1, end - 1), text)) {
            value.remove_prefix(end + 1);
        } else {
            text += value.substr(0, 1);
            value.remove_prefix(std::min<std::size_t>(value.size(), 1));
        }
    }
    return text;
}

}  // namespace

std::string XmlTag::attribute(std::string_view wanted) const {
    std::string_view rest = attributes;
    while (true) {
        skipBlanks(rest);
        std::string_view found = takeUntil(rest, "=");
        found = takeUntil(found, kBlanks);
        takeUntil(rest, "\"'");
        if (rest.empty()) {
            return "";
        }
        const std::string_view quote = rest.substr(0, 1);
        rest.remove_prefix(1);
        const std::string_view value = takeUntil(rest, quote);
        if (found == wanted) {
            return withoutReferences(value);
        }
        rest.remove_prefix(std::min<std::size_t>(rest.size(), 1));
    }
}

bool XmlTags::skipPast(std::string_view end) {
    const std::size_t found = rest_.find(end);
    rest_.remove_prefix(found == std::string_view::npos ? rest_.size() : found + end.size());
    return found != std::string_view::npos;
}

std::optional<XmlTag> XmlTags::next() {
    while (skipPast("<")) {
        if (rest_.substr(0, 3) == "!--") {
            skipPast("-->");
            continue;
        }
        if (rest_.substr(0, 8) == "![CDATA[") {
            skipPast("]]>");
            continue;
        }
        const std::size_t length = lengthOfTag(rest_);
        if (length == std::string_view::npos) {
            break;
        }
        std::string_view inside = rest_.substr(0, length);
        rest_.remove_prefix(length + 1);
        if (inside.empty() || inside.front() == '?' || inside.front() == '!') {
            continue;
        }
        XmlTag tag;
        if (inside.front() == '/') {
            tag.kind = XmlTag::Kind::kClose;
            inside.remove_prefix(1);
        } else if (inside.back() == '/') {
            tag.kind = XmlTag::Kind::kEmpty;
            inside.remove_suffix(1);
        }
        tag.name = takeUntil(inside, kBlanks);
        tag.attributes = inside;
        return tag;
    }
    rest_ = {};
    return std::nullopt;
}

}  // namespace quavin_tool
