#pragma once

#include <windows.h>
// Needs windows.h first.
#include <winternl.h>

#include <string>

#include "platform/windows/file_handle.h"

namespace VelmoraQuavin::internal::platform {

/// The handle opened by a call of the native API, and the status it returned.
struct Opening {
    FileHandle handle;
    NTSTATUS status;
};

/// Opens or creates an entry by its name in an open directory, and nowhere else: a link is opened
/// itself, not followed.
/// @param rights a security descriptor for a new entry; null to inherit from the directory.
Opening openEntry(HANDLE directory, const std::wstring& name, ACCESS_MASK access, ULONG disposition,
                  ULONG options, void* rights = nullptr);

/// Why a call of the native API failed.
std::string failure(const char* what, NTSTATUS status);

}  // namespace VelmoraQuavin::internal::platform
