#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace VelmoraQuavin::internal {

/// The part of `text` before its first zero byte.
inline std::string_view untilZeroByte(std::string_view text) noexcept {
    return text.substr(0, text.find('\0'));
}

/// UTF-16 as UTF-8, surrogate pairs combined.
/// @throws std::range_error "bad conversion" for what is not UTF-16.
std::string utf16ToUtf8(const std::u16string& text);

/// UTF-8 as UTF-16.
/// @throws std::range_error "bad conversion" for what is not UTF-8.
std::u16string utf8ToUtf16(std::string_view text);

/// Whether a character may stand in a terminal: neither a control character nor one that is not
/// seen or turns the direction of what follows.
bool isPrintable(std::uint32_t character) noexcept;

/// A text from somewhere else as it may stand in a terminal: UTF-8, with "?" for every byte that is
/// none and for characters that would move the cursor, start a command or turn the reading order.
std::string printableText(std::string_view text);

/// @throws std::range_error "bad conversion" where `text` is not UTF-8.
void requireUtf8(std::string_view text);

}  // namespace VelmoraQuavin::internal
