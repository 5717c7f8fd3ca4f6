// Replaces the system's ReadFile() for calls from a program's own objects: there is no other way to
// simulate a failing disk. A DLL's reads are not affected.

#include <windows.h>

#include <optional>
#include <stdexcept>

#include "support/unreadable_file.h"

namespace {

struct Entry {
    DWORD volume = 0;
    DWORD indexHigh = 0;
    DWORD indexLow = 0;
};
std::optional<Entry> unreadable;

Entry entryOf(HANDLE file) {
    BY_HANDLE_FILE_INFORMATION information{};
    ::GetFileInformationByHandle(file, &information);
    return {information.dwVolumeSerialNumber, information.nFileIndexHigh,
            information.nFileIndexLow};
}

BOOL WINAPI readUnlessBroken(HANDLE file, void* buffer, DWORD count, DWORD* got,
                             OVERLAPPED* overlapped) {
    if (unreadable) {
        const Entry entry = entryOf(file);
        if (entry.volume == unreadable->volume && entry.indexHigh == unreadable->indexHigh &&
            entry.indexLow == unreadable->indexLow) {
            ::SetLastError(ERROR_CRC);
            return FALSE;
        }
    }
    static auto* const systems = reinterpret_cast<decltype(&::ReadFile)>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "ReadFile")));
    return systems(file, buffer, count, got, overlapped);
}

}  // namespace

// The pointer through which the function is called.
extern "C" decltype(&::ReadFile) __imp_ReadFile;
decltype(&::ReadFile) __imp_ReadFile = &readUnlessBroken;

namespace VelmoraQuavin::testing {

UnreadableFile::UnreadableFile(const std::filesystem::path& path) {
    const HANDLE file = ::CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        throw std::runtime_error("there is no " + path.string());
    }
    unreadable = entryOf(file);
    ::CloseHandle(file);
}

UnreadableFile::~UnreadableFile() {
    unreadable.reset();
}

}  // namespace VelmoraQuavin::testing
