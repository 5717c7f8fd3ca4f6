#include "platform/posix/native_path.h"

#include <sys/stat.h>

#include <algorithm>

#include "text/unicode.h"

namespace VelmoraQuavin::internal::platform {

std::string nativePath(const String& path) {
    std::string native(untilZeroByte(path.view()));
    std::replace(native.begin(), native.end(), '\\', '/');
    return native;
}

std::string nativeUtf8Path(const String& path) {
    requireUtf8(untilZeroByte(path.view()));
    return nativePath(path);
}

bool isDirectory(const std::string& nativePath) {
    struct stat attributes {};
    return ::stat(nativePath.c_str(), &attributes) == 0 && S_ISDIR(attributes.st_mode);
}

}  // namespace VelmoraQuavin::internal::platform
