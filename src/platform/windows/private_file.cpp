#include "platform/private_file.h"

#include <windows.h>

#include "platform/windows/access_list.h"
#include "platform/windows/file_handle.h"
#include "platform/windows/wide_path.h"

namespace VelmoraQuavin::internal::platform {
PrivateReading readPrivateFile(const String& path, OpenToOthers others, unsigned char* buffer,
                               std::size_t capacity, std::size_t& size, std::string& problem) {
    const std::wstring wide = widePath(path);  // outlives the error number
    // The flag lets directories be opened, to be told what they are.
    const FileHandle file(::CreateFileW(wide.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                        OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!file) {
        problem = problemText("cannot be opened", ::GetLastError());
        return PrivateReading::kFailed;
    }
    if (!isPlainFile(file.get())) {
        problem = "is no plain file";
        return PrivateReading::kFailed;
    }
    if (others == OpenToOthers::kRefused && othersMayRead(file.get())) {
        problem =
            "can be read by others: take their right with icacls (/inheritance:r, and /grant:r for "
            "yourself)";
        return PrivateReading::kOpenToOthers;
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

// An access list of its own would stay with what is moved from there.
bool makePrivateDirectory(const String& path) {
    return ::CreateDirectoryW(widePath(path).c_str(), nullptr) != 0;
}

std::string writeNewFile(const String& path, const unsigned char* bytes, std::size_t count,
                         Readers readers) {
    const std::wstring wide = widePath(path);
    SECURITY_ATTRIBUTES* rights = nullptr;  // those that the directory hands down
    UsersOwn own;
    if (readers == Readers::kOwner) {
        if (!own) {
            return problemText("cannot be made for its owner alone", ::GetLastError());
        }
        rights = own.get();
    }
    FileHandle file(::CreateFileW(wide.c_str(), GENERIC_WRITE, 0, rights, CREATE_NEW,
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
