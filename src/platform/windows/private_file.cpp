#include "platform/private_file.h"

#include <windows.h>

#include <filesystem>
#include <optional>

#include "platform/windows/access_list.h"
#include "platform/windows/file_handle.h"
#include "platform/windows/pending_file.h"
#include "platform/windows/regular_file.h"
#include "platform/windows/wide_path.h"

namespace VelmoraQuavin::internal::platform {
namespace {

std::string writeBeside(const std::filesystem::path& path, const unsigned char* bytes,
                        std::size_t count, PendingFile::Existing existing, Readers readers) {
    void* rights = nullptr;  // inherited from the directory
    OwnerOnlyAccess own;
    if (readers == Readers::kOwner) {
        if (!own) {
            return problemText("cannot be created for its owner only", ::GetLastError());
        }
        rights = own.get()->lpSecurityDescriptor;
    }
    const std::filesystem::path parent = path.has_parent_path() ? path.parent_path() : L".";
    const FileHandle directory(::CreateFileW(parent.c_str(), FILE_TRAVERSE | FILE_READ_ATTRIBUTES,
                                             FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                             nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS,
                                             nullptr));
    if (!directory) {
        return problemText("cannot be created", ::GetLastError());
    }
    PendingFile file(directory.get(), rights);
    if (!file) {
        return problemText("cannot be created", ::GetLastError());
    }
    if (!file.write(bytes, count) || !file.putAt(path.filename().wstring(), existing)) {
        return problemText("cannot be written", ::GetLastError());
    }
    return "";
}

}  // namespace

PrivateReading readPrivateFile(const String& path, OpenToOthers others, unsigned char* buffer,
                               std::size_t capacity, std::size_t& size, std::string& problem) {
    const std::optional<RegularFile> file = openRegularFile(path, FILE_SHARE_READ, problem);
    if (!file) {
        return PrivateReading::kFailed;
    }
    HANDLE handle = file->handle.get();
    const bool readable = othersMay(Access::kRead, handle);
    const bool writable = othersMay(Access::kChange, handle);
    if (others == OpenToOthers::kRefused && (readable || writable)) {
        const char* const rights = !writable  ? "can be read"
                                   : readable ? "can be read and changed"
                                              : "can be changed";
        problem = std::string(rights) +
                  " by others: run icacls (/inheritance:r, and /grant:r for "
                  "yourself)";
        return PrivateReading::kOpenToOthers;
    }
    size = 0;
    while (size < capacity) {
        DWORD count = 0;
        if (::ReadFile(handle, buffer + size, static_cast<DWORD>(capacity - size), &count,
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

// Inherits the parent's access list: one of its own would stay with files that are moved out of it.
bool makePrivateDirectory(const String& path) {
    return ::CreateDirectoryW(widePath(path).c_str(), nullptr) != 0;
}

std::string writeNewFile(const String& path, const unsigned char* bytes, std::size_t count,
                         Readers readers) {
    const std::filesystem::path file = widePath(path);
    if (::GetFileAttributesW(file.c_str()) != INVALID_FILE_ATTRIBUTES) {
        return problemText("cannot be created", ERROR_FILE_EXISTS);
    }
    return writeBeside(file, bytes, count, PendingFile::Existing::kKept, readers);
}

std::string replaceFile(const String& path, const unsigned char* bytes, std::size_t count,
                        Readers readers) {
    return writeBeside(widePath(path), bytes, count, PendingFile::Existing::kReplaced, readers);
}

void removeUnfinishedFiles(const String& /*path*/) {}

Moving moveToNew(const String& from, const String& to, std::string& problem) {
    const std::wstring wideFrom = widePath(from);
    const std::wstring wideTo = widePath(to);
    if (::MoveFileExW(wideFrom.c_str(), wideTo.c_str(), 0) != 0) {
        return Moving::kDone;
    }
    const DWORD error = ::GetLastError();
    problem = problemText("cannot be created", error);
    return error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS ? Moving::kNameTaken
                                                                       : Moving::kFailed;
}

}  // namespace VelmoraQuavin::internal::platform
