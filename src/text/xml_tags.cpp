#include "text/xml_tags.h"

#include <utf8.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <utility>

namespace VelmoraQuavin::internal {
namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool startsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

// The position of the end of a tag: the first ">" outside quotes.
std::size_t findTagEnd(std::string_view text) {
    char quote = '\0';
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (quote != '\0') {
            quote = c == quote ? '\0' : quote;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '>') {
            return i;
        }
    }
    return std::string_view::npos;
}

// Appends the character that the text between "&" and ";" refers to; false if it refers to none.
bool appendReference(std::string& text, std::string_view reference) {
    static constexpr std::array<std::pair<std::string_view, char>, 5> kNamed{
        {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};
    for (const auto& [name, character] : kNamed) {
        if (reference == name) {
            text += character;
            return true;
        }
    }
    if (!startsWith(reference, "#")) {
        return false;
    }
    const bool hexadecimal = startsWith(reference, "#x");
    const std::string_view digits = reference.substr(hexadecimal ? 2 : 1);
    std::uint32_t character = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] =
        std::from_chars(digits.data(), end, character, hexadecimal ? 16 : 10);
    if (error != std::errc() || stop != end || !utf8::internal::is_code_point_valid(character)) {
        return false;
    }
    utf8::unchecked::append(character, std::back_inserter(text));
    return true;
}

}  // namespace

std::string_view XmlTag::attribute(std::string_view wanted) const {
    std::string_view rest = attributes;
    while (true) {
        const auto equals = rest.find('=');
        if (equals == std::string_view::npos) {
            return {};
        }
        const std::string_view found = trimmed(rest.substr(0, equals));
        const auto open = rest.find_first_of("\"'", equals);
        if (open == std::string_view::npos) {
            return {};
        }
        const auto close = rest.find(rest[open], open + 1);
        if (close == std::string_view::npos) {
            return {};
        }
        if (found == wanted) {
            return rest.substr(open + 1, close - open - 1);
        }
        rest.remove_prefix(close + 1);
    }
}

bool XmlTags::skipPast(std::string_view end) {
    const auto found = rest_.find(end);
    if (found == std::string_view::npos) {
        return false;
    }
    rest_.remove_prefix(found + end.size());
    return true;
}

std::optional<XmlTag> XmlTags::next() {
    while (skipPast("<")) {
        if (startsWith(rest_, "!--")) {
            rest_.remove_prefix(3);
            if (!skipPast("-->")) {
                break;
            }
            continue;
        }
        if (startsWith(rest_, "![CDATA[")) {
            if (!skipPast("]]>")) {
                break;
            }
            continue;
        }
        const auto end = findTagEnd(rest_);
        if (end == std::string_view::npos) {
            break;
        }
        std::string_view inside = rest_.substr(0, end);
        rest_.remove_prefix(end + 1);
        if (startsWith(inside, "?") || startsWith(inside, "!")) {
            continue;
        }
        XmlTag tag;
        if (startsWith(inside, "/")) {
            tag.kind = XmlTag::Kind::kClose;
            inside.remove_prefix(1);
        } else if (!inside.empty() && inside.back() == '/') {
            tag.kind = XmlTag::Kind::kEmpty;
            inside.remove_suffix(1);
        }
        const auto nameEnd = static_cast<std::size_t>(
            std::find_if(inside.begin(), inside.end(), isBlank) - inside.begin());
        tag.name = inside.substr(0, nameEnd);
        tag.attributes = inside.substr(nameEnd);
        return tag;
    }
    rest_ = {};
    return std::nullopt;
}

std::string withoutReferences(std::string_view value) {
    std::string decoded;
    decoded.reserve(value.size());
    while (!value.empty()) {
        const auto ampersand = std::min(value.find('&'), value.size());
        decoded += value.substr(0, ampersand);
        value.remove_prefix(ampersand);
        // Searches no further than the next "&", which no reference contains: otherwise a text full
        // of "&" would be scanned to its end from each of them.
        const auto end = value.find_first_of(";&", 1);
        if (end != std::string_view::npos && value[end] == ';' &&
            appendReference(decoded, value.substr(1, end - 1))) {
            value.remove_prefix(end + 1);
        } else if (!value.empty()) {
            decoded += '&';
            value.remove_prefix(1);
        }
    }
    return decoded;
}

std::vector<std::string> splitList(std::string_view value) {
    const std::string list = withoutReferences(value);
    std::vector<std::string> items;
    std::string item;
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (list[i] == ',') {
            items.push_back(std::move(item));
            item.clear();
        } else {
            i += list.compare(i, 2, "\\,") == 0 ? 1 : 0;
            item += list[i];
        }
    }
    if (!item.empty()) {
        items.push_back(std::move(item));
    }
    return items;
}

}  // namespace VelmoraQuavin::internal
