#include "platform/windows/directory_entry.h"

namespace VelmoraQuavin::internal::platform {
namespace {

constexpr ULONG kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr ULONG kNotThroughLinks = FILE_OPEN_REPARSE_POINT | FILE_SYNCHRONOUS_IO_NONALERT;

}  // namespace

Opening openEntry(HANDLE directory, const std::wstring& name, ACCESS_MASK access, ULONG disposition,
                  ULONG options, void* rights) {
    UNICODE_STRING text{};
    text.Buffer = const_cast<wchar_t*>(name.c_str());
    text.Length = static_cast<USHORT>(name.size() * sizeof(wchar_t));
    text.MaximumLength = text.Length;
    OBJECT_ATTRIBUTES attributes{};
    InitializeObjectAttributes(&attributes, &text, OBJ_CASE_INSENSITIVE, directory, rights);
    IO_STATUS_BLOCK result{};
    HANDLE handle = INVALID_HANDLE_VALUE;
    const NTSTATUS status = ::NtCreateFile(&handle, access | SYNCHRONIZE, &attributes, &result,
                                           nullptr, FILE_ATTRIBUTE_NORMAL, kShared, disposition,
                                           options | kNotThroughLinks, nullptr, 0);
    return {FileHandle(NT_SUCCESS(status) ? handle : INVALID_HANDLE_VALUE), status};
}

std::string failure(const char* what, NTSTATUS status) {
    return problemText(what, ::RtlNtStatusToDosError(status));
}

}  // namespace VelmoraQuavin::internal::platform
