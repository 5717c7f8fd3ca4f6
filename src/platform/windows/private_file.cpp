#include "platform/private_file.h"

#include <windows.h>

#include "platform/windows/file_handle.h"
#include "platform/windows/wide_path.h"

namespace VelmoraQuavin::internal::platform {

// Who may read a file is a matter of access lists here, which a directory hands down to its files:
// a user's own folders are closed to others. So there is nothing to ask of the file itself.
PrivateReading readPrivateFile(const String& path, OpenToOthers /*others*/, unsigned char* buffer,
                               std::size_t capacity, std::size_t& size, std::string& problem) {
    const FileHandle file(::CreateFileW(widePath(path).c_str(), GENERIC_READ, FILE_SHARE_READ,
                                        nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) {
        problem = problemText("cannot be opened", ::GetLastError());
        return PrivateReading::kFailed;
    }
    if (::GetFileType(file.get()) != FILE_TYPE_DISK) {
        problem = "is no plain file";
        return PrivateReading::kFailed;
    }
    size = 0;
    while (size < capacity) {
        DWORD count = 0;
        if (::ReadFile(file.get(), buffer + size, static_cast<DWORD>(capacity - size), &count,
                       nullptr) == 0) {
            problem = problemText("cannot be read", ::GetLastError());
            return PrivateReading::kFailed;
        }
        if (count == 0) {
            break;
        }
        size += count;
    }
    return PrivateReading::kDone;
}

bool makePrivateDirectory(const String& path) {
    return ::CreateDirectoryW(widePath(path).c_str(), nullptr) != 0;
}

std::string writeNewFile(const String& path, const unsigned char* bytes, std::size_t count,
                         Readers /*readers*/) {
    const std::wstring wide = widePath(path);
    FileHandle file(::CreateFileW(wide.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) {
        return problemText("cannot be made", ::GetLastError());
    }
    if (!writeWhole(file.get(), bytes, count)) {
        const DWORD error = ::GetLastError();
        file = FileHandle();
        ::DeleteFileW(wide.c_str());
        return problemText("cannot be written", error);
    }
    return "";
}

}  // namespace VelmoraQuavin::internal::platform
