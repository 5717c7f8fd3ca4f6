#pragma once

#include <windows.h>
// Behind windows.h, which it needs.
#include <winternl.h>

#include <string>

#include "platform/windows/file_handle.h"

namespace VelmoraQuavin::internal::platform {

/// What a call of the system's own interface has opened, and what it answered.
struct Opening {
    FileHandle handle;
    NTSTATUS status;
};

/// Opens or makes an entry by its name in an open directory, and nowhere else: a link is opened as
/// what it is.
/// @param rights a security descriptor for what is made; null for what the directory hands down.
Opening openEntry(HANDLE directory, const std::wstring& name, ACCESS_MASK access, ULONG disposition,
                  ULONG options, void* rights = nullptr);

/// Why a call of the system's own interface failed.
std::string failure(const char* what, NTSTATUS status);

}  // namespace VelmoraQuavin::internal::platform
