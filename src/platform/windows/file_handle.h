#pragma once

#include <windows.h>

#include <string>

namespace VelmoraQuavin::internal::platform {

/// What failed, and the system's text for an error number.
std::string problemText(const char* what, DWORD error);

/// Owns an open handle, or none.
class FileHandle {
public:
    FileHandle() = default;
    explicit FileHandle(HANDLE handle) : handle_(handle) {}
    FileHandle(FileHandle&& other) noexcept;
    FileHandle& operator=(FileHandle&& other) noexcept;
    ~FileHandle();

    explicit operator bool() const { return handle_ != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return handle_; }

private:
    void close();

    HANDLE handle_ = INVALID_HANDLE_VALUE;
};

/// Whether an open file is neither a directory nor a device nor a pipe.
bool isPlainFile(HANDLE file) noexcept;

/// Writes all bytes to an open file; GetLastError() tells why where it fails.
bool writeWhole(HANDLE file, const void* bytes, unsigned long long count) noexcept;

}  // namespace VelmoraQuavin::internal::platform
