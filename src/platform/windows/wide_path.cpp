#include "platform/windows/wide_path.h"

#include "core/text_tools.h"

namespace VelmoraQuavin::internal::platform {

std::wstring widePath(const String& path) {
    const std::u16string wide = utf8ToUtf16(untilZeroByte(path.view()));
    return {wide.begin(), wide.end()};
}

std::string narrowPath(const String& path) {
    return std::string(untilZeroByte(path.view()));
}

}  // namespace VelmoraQuavin::internal::platform
