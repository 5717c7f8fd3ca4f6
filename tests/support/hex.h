#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace VelmoraQuavin::testing {

/// Bytes from pairs of hexadecimal digits, as published test vectors are written.
inline std::vector<unsigned char> bytesFromHex(std::string_view digits) {
    std::vector<unsigned char> bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        bytes.push_back(
            static_cast<unsigned char>(std::stoul(std::string(digits.substr(i, 2)), nullptr, 16)));
    }
    return bytes;
}

template <typename Bytes>
std::string hexOf(const Bytes& bytes) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string digits;
    for (const unsigned char byte : bytes) {
        digits += {kDigits[byte / 16], kDigits[byte % 16]};
    }
    return digits;
}

}  // namespace VelmoraQuavin::testing
