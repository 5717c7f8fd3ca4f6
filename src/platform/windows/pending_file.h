#pragma once

#include <windows.h>

#include <string>

#include "platform/windows/directory_entry.h"

namespace VelmoraQuavin::internal::platform {

/// A file in the making: it stands beside its place under a name of its own, and the system removes
/// it with its last handle, however the process ends, unless it has been put in its place.
class PendingFile {
public:
    /// Makes the file; GetLastError() tells why it could not.
    /// @param directory open; stays so as long as this lives.
    /// @param rights a security descriptor; null for what the directory hands down.
    explicit PendingFile(HANDLE directory, void* rights = nullptr);

    explicit operator bool() const { return static_cast<bool>(file_); }

    /// Writes at the end; GetLastError() tells why it failed.
    bool write(const void* bytes, unsigned long long count);

    enum class Existing { kReplaced, kKept };
    /// Puts the file in its place; GetLastError() tells why it could not.
    /// @param existing what becomes of a file that is there; one that is kept is a failure.
    bool putAt(const std::wstring& name, Existing existing);

private:
    bool setRemoved(bool removed);

    HANDLE directory_;
    FileHandle file_;
};

}  // namespace VelmoraQuavin::internal::platform
