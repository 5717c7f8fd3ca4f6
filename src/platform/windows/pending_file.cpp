#include "platform/windows/pending_file.h"

#include <cstring>
#include <utility>
#include <vector>

namespace VelmoraQuavin::internal::platform {
namespace {

// Enough for the files that one process writes at once, and for those left after a system crash by
// a process with the same number.
constexpr int kNames = 1000;
// Statuses for a name that is taken, which not every header defines.
constexpr auto kNameCollision = static_cast<NTSTATUS>(0xC0000035);
constexpr auto kDeletePending = static_cast<NTSTATUS>(0xC0000056);

// An ntdll call that only the driver kit's headers declare: neither the call nor its constant is in
// the SDK headers.
using SetInformation = NTSTATUS(NTAPI*)(HANDLE, IO_STATUS_BLOCK*, void*, ULONG, int);
constexpr int kRenameInformation = 10;

SetInformation setInformationCall() {
    static const FARPROC call =
        ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "NtSetInformationFile");
    // Compilers accept a cast to any type of function only from this one.
    return reinterpret_cast<SetInformation>(reinterpret_cast<void (*)()>(call));
}

}  // namespace

PendingFile::PendingFile(HANDLE directory, void* rights) : directory_(directory) {
    const std::wstring prefix = L".quavin-" + std::to_wstring(::GetCurrentProcessId()) + L"-";
    NTSTATUS status = kNameCollision;
    for (int attempt = 0;
         attempt < kNames && (status == kNameCollision || status == kDeletePending); ++attempt) {
        Opening opening =
            openEntry(directory, prefix + std::to_wstring(attempt), FILE_GENERIC_WRITE | DELETE,
                      FILE_CREATE, FILE_NON_DIRECTORY_FILE, rights);
        status = opening.status;
        file_ = std::move(opening.handle);
    }
    if (file_) {
        setRemoved(true);
    }
    ::SetLastError(::RtlNtStatusToDosError(status));
}

bool PendingFile::write(const void* bytes, unsigned long long count) {
    return writeWhole(file_.get(), bytes, count);
}

bool PendingFile::setRemoved(bool removed) {
    FILE_DISPOSITION_INFO request{};
    request.DeleteFile = removed ? TRUE : FALSE;
    return ::SetFileInformationByHandle(file_.get(), FileDispositionInfo, &request,
                                        sizeof request) != 0;
}

bool PendingFile::putAt(const std::wstring& name, Existing existing) {
    const std::size_t bytes = name.size() * sizeof(wchar_t);
    std::vector<unsigned char> memory(sizeof(FILE_RENAME_INFO) + bytes);
    auto* const request = reinterpret_cast<FILE_RENAME_INFO*>(memory.data());
    request->ReplaceIfExists = existing == Existing::kReplaced ? TRUE : FALSE;
    request->RootDirectory = directory_;
    request->FileNameLength = static_cast<DWORD>(bytes);
    std::memcpy(request->FileName, name.data(), bytes);
    // A file marked for deletion cannot be renamed.
    if (!setRemoved(false)) {
        return false;
    }
    IO_STATUS_BLOCK result{};
    const NTSTATUS status = setInformationCall()(
        file_.get(), &result, request, static_cast<ULONG>(memory.size()), kRenameInformation);
    if (!NT_SUCCESS(status)) {
        setRemoved(true);
    }
    ::SetLastError(::RtlNtStatusToDosError(status));
    return NT_SUCCESS(status);
}

}  // namespace VelmoraQuavin::internal::platform
