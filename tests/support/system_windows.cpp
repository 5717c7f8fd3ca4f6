#include "support/system.h"

#include <windows.h>

#include <cstdint>
#include <system_error>

namespace VelmoraQuavin::testing {
namespace {

namespace fs = std::filesystem;

EntryKind kindOf(DWORD attributes) {
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
        return EntryKind::kLink;
    }
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? EntryKind::kDirectory : EntryKind::kFile;
}

}  // namespace

// File names cannot contain control characters.
std::string whiteSpaceOfNames() {
    return " ";
}

// Without this prefix a path is limited to 259 characters.
fs::path longPath(const fs::path& path) {
    const std::wstring prefix = L"\\\\?\\";
    return path.native().compare(0, prefix.size(), prefix) == 0
               ? path
               : fs::path(prefix + fs::absolute(path).make_preferred().native());
}

bool narrowPathsAreUtf8() {
    return ::GetACP() == CP_UTF8;
}

std::vector<DirectoryEntry> entriesOf(const fs::path& directory) {
    std::vector<DirectoryEntry> entries;
    WIN32_FIND_DATAW found{};
    const HANDLE search = ::FindFirstFileW((longPath(directory) / L"*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        throw fs::filesystem_error(
            "cannot list", directory,
            std::error_code(static_cast<int>(::GetLastError()), std::system_category()));
    }
    do {
        const std::wstring name = found.cFileName;
        if (name != L"." && name != L"..") {
            entries.push_back({name, kindOf(found.dwFileAttributes)});
        }
    } while (::FindNextFileW(search, &found) != 0);
    ::FindClose(search);
    return entries;
}

// Probes one handle after another, because the emulator these tests run under does not count them.
std::size_t openFiles() {
    constexpr std::uintptr_t kStep = 4;  // between the values of handles
    constexpr int kEnd = 256;            // after this many unused values in a row, none follow
    std::size_t count = 0;
    int unused = 0;
    for (std::uintptr_t value = kStep; unused < kEnd; value += kStep) {
        DWORD flags = 0;
        const bool isOpen = ::GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) != 0;
        count += isOpen ? 1 : 0;
        unused = isOpen ? 0 : unused + 1;
    }
    return count;
}

bool runsUnderWine() {
    return ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

void removeTree(const fs::path& directory) noexcept {
    try {
        const fs::path root = longPath(directory);
        for (const DirectoryEntry& entry : entriesOf(root)) {
            if (entry.kind == EntryKind::kDirectory) {
                removeTree(root / entry.name);
            } else {
                ::DeleteFileW((root / entry.name).c_str());
            }
        }
        ::RemoveDirectoryW(root.c_str());
    } catch (const fs::filesystem_error&) {  // the directory does not exist
    }
}

}  // namespace VelmoraQuavin::testing
