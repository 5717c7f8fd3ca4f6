#include "platform/file_system.h"

#include <windows.h>

#include <cstdio>
#include <string>

#include "platform/windows/wide_path.h"

namespace VelmoraQuavin::internal::platform {
namespace {

// Strips trailing separators, which archives put after the names of directories. The root of a
// drive keeps its own.
std::wstring withoutLastSeparators(std::wstring path) {
    const auto isSeparator = [](wchar_t character) {
        return character == L'\\' || character == L'/';
    };
    while (path.size() > 1 && isSeparator(path.back()) && path[path.size() - 2] != L':') {
        path.pop_back();
    }
    return path;
}

}  // namespace

DirectoryCreation createDirectory(const String& path) {
    const std::string narrow = narrowPath(path);  // freed only after the error number is read
    if (::CreateDirectoryA(narrow.c_str(), nullptr) != 0) {
        return DirectoryCreation::kCreated;
    }
    return ::GetLastError() == ERROR_PATH_NOT_FOUND ? DirectoryCreation::kParentMissing
                                                    : DirectoryCreation::kOtherFailure;
}

bool removeFile(const String& path) {
    return std::remove(narrowPath(path).c_str()) == 0;
}

bool isMissing(const String& path) {
    const std::wstring wide = withoutLastSeparators(widePath(path));
    return ::GetFileAttributesW(wide.c_str()) == INVALID_FILE_ATTRIBUTES &&
           ::GetLastError() == ERROR_FILE_NOT_FOUND;
}

std::filesystem::path standardPath(const String& path) {
    return widePath(path);
}

}  // namespace VelmoraQuavin::internal::platform
