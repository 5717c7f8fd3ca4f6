#pragma once

#include <string>
#include <string_view>

namespace VelmoraQuavin::internal {

constexpr std::string_view kHexDigits = "0123456789abcdef";

/// The bytes of an array as lower-case hexadecimal digits, two for each.
template <typename Bytes>
std::string hexText(const Bytes& bytes) {
    std::string text;
    text.reserve(2 * bytes.size());
    for (const unsigned char byte : bytes) {
        text += kHexDigits[byte / kHexDigits.size()];
        text += kHexDigits[byte % kHexDigits.size()];
    }
    return text;
}

}  // namespace VelmoraQuavin::internal
