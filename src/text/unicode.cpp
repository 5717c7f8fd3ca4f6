#include "text/unicode.h"

#include <utf8.h>

#include <iterator>
#include <stdexcept>

namespace VelmoraQuavin::internal {
namespace {

// The message of one standard library's converter, used here so that it is the same with all of
// them.
constexpr const char* kBadConversion = "bad conversion";

}  // namespace

std::string utf16ToUtf8(const std::u16string& text) {
    std::string converted;
    converted.reserve(text.size());
    try {
        utf8::utf16to8(text.begin(), text.end(), std::back_inserter(converted));
    } catch (const utf8::exception&) {
        throw std::range_error(kBadConversion);
    }
    return converted;
}

std::u16string utf8ToUtf16(std::string_view text) {
    std::u16string converted;
    converted.reserve(text.size());
    try {
        utf8::utf8to16(text.begin(), text.end(), std::back_inserter(converted));
    } catch (const utf8::exception&) {
        throw std::range_error(kBadConversion);
    }
    return converted;
}

bool isPrintable(std::uint32_t character) noexcept {
    const auto isBetween = [character](std::uint32_t first, std::uint32_t last) {
        return first <= character && character <= last;
    };
    return !isBetween(0, 0x1F) && !isBetween(0x7F, 0x9F) && !isBetween(0x200B, 0x200F) &&
           !isBetween(0x2028, 0x202E) && !isBetween(0x2060, 0x2069) && character != 0xFEFF;
}

std::string printableText(std::string_view text) {
    std::string valid;
    utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(valid), U'?');
    std::string printable;
    for (auto next = valid.begin(); next != valid.end();) {
        const std::uint32_t character = utf8::unchecked::next(next);
        utf8::unchecked::append(isPrintable(character) ? character : U'?',
                                std::back_inserter(printable));
    }
    return printable;
}

bool isUtf8(std::string_view text) {
    return utf8::is_valid(text.begin(), text.end());
}

void requireUtf8(std::string_view text) {
    if (!isUtf8(text)) {
        throw std::range_error(kBadConversion);
    }
}

std::string toAsciiLower(std::string_view text) {
    std::string small(text);
    for (char& character : small) {
        if (character >= 'A' && character <= 'Z') {
            character = static_cast<char>(character - 'A' + 'a');
        }
    }
    return small;
}

}  // namespace VelmoraQuavin::internal
