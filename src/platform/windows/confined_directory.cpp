#include "platform/confined_directory_implementation.h"

#include <windows.h>

#include <utility>

#include "platform/directory_walk.h"
#include "platform/windows/directory_entry.h"
#include "platform/windows/file_handle.h"
#include "platform/windows/pending_file.h"
#include "platform/windows/wide_path.h"
#include "text/portable_name.h"

namespace VelmoraQuavin::internal::platform {
namespace {

constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

DWORD attributesOf(HANDLE handle) {
    BY_HANDLE_FILE_INFORMATION information{};
    return ::GetFileInformationByHandle(handle, &information) != 0 ? information.dwFileAttributes
                                                                   : INVALID_FILE_ATTRIBUTES;
}

bool isLink(HANDLE handle) {
    return (attributesOf(handle) & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

// Why an existing entry cannot be used.
std::string obstacle(HANDLE directory, const std::wstring& name, const char* otherwise,
                     NTSTATUS status, bool fileIsWanted) {
    const Opening there = openEntry(directory, name, FILE_READ_ATTRIBUTES, FILE_OPEN, 0);
    if (!there.handle) {
        return failure(otherwise, status);
    }
    const DWORD attributes = attributesOf(there.handle.get());
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
        return "a symbolic link is in its way";
    }
    const bool isDirectory = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (isDirectory && fileIsWanted) {
        return "a directory is where the file is needed";
    }
    return isDirectory || fileIsWanted ? failure(otherwise, status)
                                       : "a file is where a directory is needed";
}

// Status codes that not every header defines.
constexpr auto kNotFound = static_cast<NTSTATUS>(0xC0000034);
constexpr auto kNameCollision = static_cast<NTSTATUS>(0xC0000035);

constexpr const char* kImpossible = "its name is not possible on this system";

class WindowsDirectory : public ConfinedDirectory::Implementation {
public:
    explicit WindowsDirectory(FileHandle root) : walk_(std::move(root)) {}

    std::string enter(ConfinedDirectory::Names::const_iterator begin,
                      ConfinedDirectory::Names::const_iterator end) override {
        return walk_.enter(begin, end, openOrCreate);
    }

    std::string write(const std::string& name, const void* content, std::uint64_t size) override {
        if (!isPortableName(name)) {
            return kImpossible;
        }
        const std::wstring wide = widePath(name);
        HANDLE directory = walk_.current().get();
        const NTSTATUS status = statusInTheWay(directory, wide);
        if (!NT_SUCCESS(status)) {
            return obstacle(directory, wide, "the file cannot be created", status, true);
        }
        PendingFile file(directory);
        if (!file) {
            return problemText("the file cannot be created", ::GetLastError());
        }
        // Replaced rather than overwritten: a hard link to it elsewhere keeps its content.
        if (!file.write(content, size) || !file.putAt(wide, PendingFile::Existing::kReplaced)) {
            return problemText("the file cannot be written", ::GetLastError());
        }
        return "";
    }

private:
    static std::string openOrCreate(const FileHandle& directory, const std::string& name,
                                    FileHandle& opened) {
        if (!isPortableName(name)) {
            return kImpossible;
        }
        const std::wstring wide = widePath(name);
        Opening opening = openEntry(directory.get(), wide, FILE_TRAVERSE | FILE_READ_ATTRIBUTES,
                                    FILE_OPEN_IF, FILE_DIRECTORY_FILE);
        if (!opening.handle || isLink(opening.handle.get())) {
            return obstacle(directory.get(), wide, "a directory cannot be created or opened",
                            opening.status, false);
        }
        opened = std::move(opening.handle);
        return "";
    }

    // An error status if the name is taken by anything but a regular file; success if not.
    static NTSTATUS statusInTheWay(HANDLE directory, const std::wstring& name) {
        const Opening there =
            openEntry(directory, name, FILE_READ_ATTRIBUTES, FILE_OPEN, FILE_NON_DIRECTORY_FILE);
        if (there.handle) {
            return isLink(there.handle.get()) ? kNameCollision : 0;
        }
        return there.status == kNotFound ? 0 : there.status;
    }

    DirectoryWalk<FileHandle> walk_;
};

}  // namespace

std::optional<ConfinedDirectory> ConfinedDirectory::open(const String& path) {
    FileHandle root(::CreateFileW(widePath(path).c_str(), FILE_TRAVERSE | FILE_READ_ATTRIBUTES,
                                  kShared, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS,
                                  nullptr));
    if (!root || (attributesOf(root.get()) & FILE_ATTRIBUTE_DIRECTORY) == 0) {
        return std::nullopt;
    }
    return ConfinedDirectory(std::make_unique<WindowsDirectory>(std::move(root)));
}

}  // namespace VelmoraQuavin::internal::platform
