#include "platform/windows/wide_path.h"

#include <windows.h>

#include "text/unicode.h"

namespace VelmoraQuavin::internal::platform {

std::wstring widePath(const String& path) {
    const std::u16string wide = utf8ToUtf16(untilZeroByte(path.view()));
    return {wide.begin(), wide.end()};
}

std::string narrowPath(const String& path) {
    return std::string(untilZeroByte(path.view()));
}

std::string utf8Text(std::wstring_view text) {
    const auto convert = [text](char* output, int size) {
        return ::WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), output,
                                     size, nullptr, nullptr);
    };
    std::string converted(static_cast<std::size_t>(convert(nullptr, 0)), '\0');
    convert(converted.data(), static_cast<int>(converted.size()));
    return converted;
}

}  // namespace VelmoraQuavin::internal::platform
