#include "platform/confined_directory.h"

#include <windows.h>
// Behind windows.h, which it needs.
#include <winternl.h>

#include <cstring>
#include <utility>
#include <vector>

#include "platform/directory_walk.h"
#include "platform/windows/file_handle.h"
#include "platform/windows/possible_name.h"
#include "platform/windows/wide_path.h"

namespace VelmoraQuavin::internal::platform {
namespace {

constexpr ULONG kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
// Never followed: a link is opened as what it is.
constexpr ULONG kNotThroughLinks = FILE_OPEN_REPARSE_POINT | FILE_SYNCHRONOUS_IO_NONALERT;

// To find a name for a file that is to replace another one.
constexpr int kAttempts = 100;
// FileRenameInformation, which not every header names.
constexpr int kRenameInformation = 10;

struct Opening {
    FileHandle handle;
    NTSTATUS status;
};

// Opens or makes an entry by its name in an open directory, and nowhere else.
Opening openEntry(HANDLE directory, const std::wstring& name, ACCESS_MASK access, ULONG disposition,
                  ULONG options) {
    UNICODE_STRING text{};
    text.Buffer = const_cast<wchar_t*>(name.c_str());
    text.Length = static_cast<USHORT>(name.size() * sizeof(wchar_t));
    text.MaximumLength = text.Length;
    OBJECT_ATTRIBUTES attributes{};
    InitializeObjectAttributes(&attributes, &text, OBJ_CASE_INSENSITIVE, directory, nullptr);
    IO_STATUS_BLOCK result{};
    HANDLE handle = INVALID_HANDLE_VALUE;
    const NTSTATUS status = ::NtCreateFile(&handle, access | SYNCHRONIZE, &attributes, &result,
                                           nullptr, FILE_ATTRIBUTE_NORMAL, kShared, disposition,
                                           options | kNotThroughLinks, nullptr, 0);
    return {FileHandle(NT_SUCCESS(status) ? handle : INVALID_HANDLE_VALUE), status};
}

DWORD attributesOf(HANDLE handle) {
    BY_HANDLE_FILE_INFORMATION information{};
    return ::GetFileInformationByHandle(handle, &information) != 0 ? information.dwFileAttributes
                                                                   : INVALID_FILE_ATTRIBUTES;
}

bool isLink(HANDLE handle) {
    return (attributesOf(handle) & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

std::string failure(const char* what, NTSTATUS status) {
    return problemText(what, ::RtlNtStatusToDosError(status));
}

// Why an entry that is there cannot be used.
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

constexpr const char* kImpossible = "its name is not possible on this system";

}  // namespace

class ConfinedDirectory::Implementation {
public:
    explicit Implementation(FileHandle root) : walk_(std::move(root)) {}

    // Makes a directory the current one, and makes it where it is missing.
    std::string enter(Names::const_iterator begin, Names::const_iterator end) {
        return walk_.enter(begin, end, openOrCreate);
    }

    std::string write(const std::string& name, const void* content, std::uint64_t size) {
        const std::wstring wide = widePath(name);
        if (!isPossibleName(wide)) {
            return kImpossible;
        }
        HANDLE directory = walk_.current().get();
        std::wstring written = wide;
        Opening file = create(directory, wide);
        // Replaced and not written into: a hard link to it elsewhere keeps its content, and so does
        // the file itself until its successor is whole.
        if (!file.handle && isPlainFile(directory, wide)) {
            file = createBeside(directory, written);
        }
        if (!file.handle) {
            return obstacle(directory, wide, "the file cannot be made", file.status, true);
        }
        if (!writeWhole(file.handle.get(), content, size) ||
            (written != wide && !rename(file.handle.get(), directory, wide))) {
            const DWORD error = ::GetLastError();
            remove(file.handle.get());
            return problemText("the file cannot be written", error);
        }
        return "";
    }

private:
    static std::string openOrCreate(const FileHandle& directory, const std::string& name,
                                    FileHandle& opened) {
        const std::wstring wide = widePath(name);
        if (!isPossibleName(wide)) {
            return kImpossible;
        }
        Opening opening = openEntry(directory.get(), wide, FILE_TRAVERSE | FILE_READ_ATTRIBUTES,
                                    FILE_OPEN_IF, FILE_DIRECTORY_FILE);
        if (!opening.handle || isLink(opening.handle.get())) {
            return obstacle(directory.get(), wide, "a directory cannot be made or opened",
                            opening.status, false);
        }
        opened = std::move(opening.handle);
        return "";
    }

    static Opening create(HANDLE directory, const std::wstring& name) {
        return openEntry(directory, name, FILE_GENERIC_WRITE | DELETE, FILE_CREATE,
                         FILE_NON_DIRECTORY_FILE);
    }

    // Under a name that nobody has, which it tells.
    static Opening createBeside(HANDLE directory, std::wstring& name) {
        Opening file{FileHandle(), 0};
        for (int attempt = 0; !file.handle && attempt < kAttempts; ++attempt) {
            name = L".quavin-" + std::to_wstring(attempt);
            file = create(directory, name);
        }
        return file;
    }

    static bool isPlainFile(HANDLE directory, const std::wstring& name) {
        const Opening file =
            openEntry(directory, name, FILE_READ_ATTRIBUTES, FILE_OPEN, FILE_NON_DIRECTORY_FILE);
        return file.handle && !isLink(file.handle.get());
    }

    static bool rename(HANDLE file, HANDLE directory, const std::wstring& name) {
        const std::size_t bytes = name.size() * sizeof(wchar_t);
        std::vector<unsigned char> memory(sizeof(FILE_RENAME_INFO) + bytes);
        auto* const request = reinterpret_cast<FILE_RENAME_INFO*>(memory.data());
        request->ReplaceIfExists = TRUE;
        request->RootDirectory = directory;
        request->FileNameLength = static_cast<DWORD>(bytes);
        std::memcpy(request->FileName, name.data(), bytes);
        IO_STATUS_BLOCK result{};
        const NTSTATUS status =
            ::NtSetInformationFile(file, &result, request, static_cast<ULONG>(memory.size()),
                                   static_cast<FILE_INFORMATION_CLASS>(kRenameInformation));
        ::SetLastError(::RtlNtStatusToDosError(status));
        return NT_SUCCESS(status);
    }

    static void remove(HANDLE file) {
        FILE_DISPOSITION_INFO request{};
        request.DeleteFile = TRUE;
        ::SetFileInformationByHandle(file, FileDispositionInfo, &request, sizeof request);
    }

    DirectoryWalk<FileHandle> walk_;
};

ConfinedDirectory::ConfinedDirectory(std::unique_ptr<Implementation> implementation)
    : implementation_(std::move(implementation)) {}
ConfinedDirectory::ConfinedDirectory(ConfinedDirectory&& other) noexcept = default;
ConfinedDirectory& ConfinedDirectory::operator=(ConfinedDirectory&& other) noexcept = default;
ConfinedDirectory::~ConfinedDirectory() = default;

std::optional<ConfinedDirectory> ConfinedDirectory::open(const String& path) {
    FileHandle root(::CreateFileW(widePath(path).c_str(), FILE_TRAVERSE | FILE_READ_ATTRIBUTES,
                                  kShared, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS,
                                  nullptr));
    if (!root || (attributesOf(root.get()) & FILE_ATTRIBUTE_DIRECTORY) == 0) {
        return std::nullopt;
    }
    return ConfinedDirectory(std::make_unique<Implementation>(std::move(root)));
}

std::string ConfinedDirectory::createDirectories(const Names& names) {
    return implementation_->enter(names.begin(), names.end());
}

std::string ConfinedDirectory::writeFile(const Names& names, const void* content,
                                         std::uint64_t size) {
    const std::string problem = implementation_->enter(names.begin(), names.end() - 1);
    return problem.empty() ? implementation_->write(names.back(), content, size) : problem;
}

}  // namespace VelmoraQuavin::internal::platform
