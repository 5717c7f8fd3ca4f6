#include "platform/windows/possible_name.h"

#include <algorithm>
#include <array>
#include <string>

namespace VelmoraQuavin::internal::platform {
namespace {

constexpr std::size_t kLongestName = 255;

bool isForbidden(wchar_t character) {
    constexpr std::wstring_view kReserved = L"<>:\"|?*/\\";
    return character < L' ' || kReserved.find(character) != std::wstring_view::npos;
}

// Not the C library's: what it takes for capitals depends on the host's locale.
wchar_t inCapitals(wchar_t character) {
    return character >= L'a' && character <= L'z' ? static_cast<wchar_t>(character - L'a' + L'A')
                                                  : character;
}

// Whether it ends the name of a serial or parallel device; the superscripts 1, 2 and 3 do too.
bool isDeviceDigit(wchar_t character) {
    return (character >= L'0' && character <= L'9') || character == L'\x00B9' ||
           character == L'\x00B2' || character == L'\x00B3';
}

// A device has its name in every directory, whatever stands behind a dot, and spaces before it.
bool isDevice(std::wstring_view name) {
    std::wstring stem(name.substr(0, name.find(L'.')));
    stem.erase(stem.find_last_not_of(L' ') + 1);
    std::transform(stem.begin(), stem.end(), stem.begin(), inCapitals);
    constexpr std::array<std::wstring_view, 6> kDevices = {L"CON", L"PRN",    L"AUX",
                                                           L"NUL", L"CONIN$", L"CONOUT$"};
    if (std::find(kDevices.begin(), kDevices.end(), stem) != kDevices.end()) {
        return true;
    }
    const std::wstring kind = stem.substr(0, 3);
    return stem.size() == 4 && (kind == L"COM" || kind == L"LPT") && isDeviceDigit(stem.back());
}

}  // namespace

bool isPossibleName(std::wstring_view name) {
    if (name.empty() || name.size() > kLongestName) {
        return false;
    }
    const bool losesItsEnd = name.back() == L'.' || name.back() == L' ';
    return !losesItsEnd && std::none_of(name.begin(), name.end(), isForbidden) && !isDevice(name);
}

}  // namespace VelmoraQuavin::internal::platform
