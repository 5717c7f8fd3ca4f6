#include "text/base64.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace VelmoraQuavin::internal {
namespace {

constexpr std::string_view kAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t kNoDigit = 64;

constexpr std::array<std::uint8_t, 256> makeDigits() {
    std::array<std::uint8_t, 256> digits{};
    for (std::uint8_t& digit : digits) {
        digit = kNoDigit;
    }
    for (std::size_t i = 0; i < kAlphabet.size(); ++i) {
        digits[static_cast<unsigned char>(kAlphabet[i])] = static_cast<std::uint8_t>(i);
    }
    return digits;
}
constexpr std::array<std::uint8_t, 256> kDigits = makeDigits();

char byteOf(std::uint32_t bits, unsigned int shift) {
    return static_cast<char>(static_cast<unsigned char>(bits >> shift & 0xFFU));
}

char digitOf(std::uint32_t bits, unsigned int shift) {
    return kAlphabet[bits >> shift & 0x3FU];
}

bool decode(std::string_view text, std::string_view skipped, std::string& bytes) {
    bytes.reserve(text.size() / 4 * 3 + 2);  // so that it stays where it is
    std::uint32_t bits = 0;
    std::size_t count = 0;
    std::size_t padding = 0;
    for (const char character : text) {
        if (skipped.find(character) != std::string_view::npos) {
            continue;
        }
        if (character == '=') {
            ++padding;
            continue;
        }
        const std::uint8_t digit = kDigits[static_cast<unsigned char>(character)];
        if (digit == kNoDigit || padding != 0) {
            return false;
        }
        bits = bits << 6U | digit;
        if (++count % 4 == 0) {
            bytes.append({byteOf(bits, 16), byteOf(bits, 8), byteOf(bits, 0)});
            bits = 0;
        }
    }
    if (count % 4 == 1 || padding != (4 - count % 4) % 4) {
        return false;
    }
    if (padding == 1) {
        bytes.append({byteOf(bits, 10), byteOf(bits, 2)});
        bits &= 0x3U;
    } else if (padding == 2) {
        bytes.append({byteOf(bits, 4)});
        bits &= 0xFU;
    }
    return bits == 0;
}

}  // namespace

std::optional<std::string> decodeBase64(std::string_view text) {
    std::string bytes;
    return decode(text, "", bytes) ? std::optional(std::move(bytes)) : std::nullopt;
}

bool decodeBase64Lines(std::string_view text, std::string& bytes) {
    return decode(text, "\r\n", bytes);
}

std::string encodeBase64(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    while (!bytes.empty()) {
        const std::string_view group = bytes.substr(0, 3);
        std::uint32_t bits = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            bits = bits << 8U | (i < group.size() ? static_cast<unsigned char>(group[i]) : 0U);
        }
        text.append({digitOf(bits, 18), digitOf(bits, 12)});
        text += group.size() > 1 ? digitOf(bits, 6) : '=';
        text += group.size() > 2 ? digitOf(bits, 0) : '=';
        bytes.remove_prefix(group.size());
    }
    return text;
}

}  // namespace VelmoraQuavin::internal
