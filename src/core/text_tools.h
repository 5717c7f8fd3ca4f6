#pragma once

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

/// @throws std::range_error "bad conversion" where `text` is not UTF-8.
void requireUtf8(std::string_view text);

}  // namespace VelmoraQuavin::internal
