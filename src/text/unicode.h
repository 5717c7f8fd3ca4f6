#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace VelmoraQuavin::internal {

/// The part of `text` before its first zero byte.
inline std::string_view untilZeroByte(std::string_view text) noexcept {
    return text.substr(0, text.find('\0'));
}

/// The size of the byte order mark that some editors put in front of a text; 0 if there is none.
inline std::size_t byteOrderMarkSize(std::string_view text) noexcept {
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    return text.substr(0, kMark.size()) == kMark ? kMark.size() : 0;
}

/// Converts UTF-16 to UTF-8, combining surrogate pairs.
/// @throws std::range_error "bad conversion" if `text` is not valid UTF-16.
std::string utf16ToUtf8(const std::u16string& text);

/// Converts UTF-8 to UTF-16.
/// @throws std::range_error "bad conversion" if `text` is not valid UTF-8.
std::u16string utf8ToUtf16(std::string_view text);

/// Whether a character is safe to print on a terminal: not a control character, not invisible, and
/// not one that changes the reading direction.
bool isPrintable(std::uint32_t character) noexcept;

/// Makes an untrusted text safe to print: valid UTF-8, with "?" in place of invalid bytes and of
/// characters that would move the cursor, start an escape sequence or change the reading direction.
std::string printableText(std::string_view text);

bool isUtf8(std::string_view text);

/// @throws std::range_error "bad conversion" if `text` is not UTF-8.
void requireUtf8(std::string_view text);

/// Converts ASCII letters to lower case.
std::string toAsciiLower(std::string_view text);

}  // namespace VelmoraQuavin::internal
