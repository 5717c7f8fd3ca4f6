#include "platform/windows/regular_file.h"

#include <utility>

#include "platform/windows/wide_path.h"

namespace VelmoraQuavin::internal::platform {
namespace {

bool isPlainFile(HANDLE file) noexcept {
    BY_HANDLE_FILE_INFORMATION information{};
    return ::GetFileType(file) == FILE_TYPE_DISK &&
           ::GetFileInformationByHandle(file, &information) != 0 &&
           (information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

}  // namespace

std::optional<RegularFile> openRegularFile(const String& path, DWORD sharing,
                                           std::string& problem) {
    const std::wstring wide = widePath(path);  // freed only after the error number is read
    // The flag allows opening directories too, so that they can be recognised as such.
    FileHandle handle(::CreateFileW(wide.c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!handle) {
        problem = problemText("cannot be opened", ::GetLastError());
        return std::nullopt;
    }
    LARGE_INTEGER size{};
    if (!isPlainFile(handle.get()) || ::GetFileSizeEx(handle.get(), &size) == 0) {
        problem = "is not a regular file";
        return std::nullopt;
    }
    return RegularFile{std::move(handle), static_cast<std::uint64_t>(size.QuadPart)};
}

}  // namespace VelmoraQuavin::internal::platform
