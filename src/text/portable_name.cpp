#include "text/portable_name.h"

#include <algorithm>
#include <array>
#include <string>

namespace VelmoraQuavin::internal {
namespace {

// In UTF-16 code units.
constexpr std::size_t kLongestName = 255;

bool isForbidden(char character) {
    constexpr std::string_view kReserved = "<>:\"|?*/\\";
    return static_cast<unsigned char>(character) < ' ' ||
           kReserved.find(character) != std::string_view::npos;
}

// Not the C library's toupper, which depends on the host's locale.
char toUpper(char character) {
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A')
                                                : character;
}

std::size_t lengthInUtf16(std::string_view name) {
    std::size_t length = 0;
    for (const char character : name) {
        const auto byte = static_cast<unsigned char>(character);
        length += (byte & 0xC0) == 0x80 ? 0 : byte >= 0xF0 ? 2 : 1;
    }
    return length;
}

// Whether `text` can end the name of a serial or parallel device; the superscripts 1, 2 and 3 can
// too.
bool isDeviceDigit(std::string_view text) {
    return (text.size() == 1 && text[0] >= '0' && text[0] <= '9') || text == "\u00B9" ||
           text == "\u00B2" || text == "\u00B3";
}

// Device names are reserved in every directory, whatever follows a dot, and with spaces before the
// dot.
bool isDevice(std::string_view name) {
    std::string stem(name.substr(0, name.find('.')));
    stem.erase(stem.find_last_not_of(' ') + 1);
    std::transform(stem.begin(), stem.end(), stem.begin(), toUpper);
    constexpr std::array<std::string_view, 6> kDevices = {"CON", "PRN",    "AUX",
                                                          "NUL", "CONIN$", "CONOUT$"};
    if (std::find(kDevices.begin(), kDevices.end(), stem) != kDevices.end()) {
        return true;
    }
    const std::string_view kind = std::string_view(stem).substr(0, 3);
    return (kind == "COM" || kind == "LPT") && isDeviceDigit(std::string_view(stem).substr(3));
}

}  // namespace

bool isPortableName(std::string_view name) {
    if (name.empty() || lengthInUtf16(name) > kLongestName) {
        return false;
    }
    const bool endIsStripped = name.back() == '.' || name.back() == ' ';
    return !endIsStripped && std::none_of(name.begin(), name.end(), isForbidden) && !isDevice(name);
}

}  // namespace VelmoraQuavin::internal
