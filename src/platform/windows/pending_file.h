#pragma once

#include <windows.h>

#include <string>

#include "platform/windows/directory_entry.h"

namespace VelmoraQuavin::internal::platform {

/// A file being written: it stays next to its final place under a temporary name, and unless it is
/// moved into place the system removes it with its last handle, however the process ends.
class PendingFile {
public:
    /// Creates the file; on failure GetLastError() tells why.
    /// @param directory an open directory; must stay open for the lifetime of this object.
    /// @param rights a security descriptor; null to inherit from the directory.
    explicit PendingFile(HANDLE directory, void* rights = nullptr);

    explicit operator bool() const { return static_cast<bool>(file_); }

    /// Appends to the file; on failure GetLastError() tells why.
    bool write(const void* bytes, unsigned long long count);

    enum class Existing { kReplaced, kKept };
    /// Moves the file into place; on failure GetLastError() tells why.
    /// @param existing what happens to an existing file; if it is kept, the call fails.
    bool putAt(const std::wstring& name, Existing existing);

private:
    bool setRemoved(bool removed);

    HANDLE directory_;
    FileHandle file_;
};

}  // namespace VelmoraQuavin::internal::platform
