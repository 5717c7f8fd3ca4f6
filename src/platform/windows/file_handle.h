#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

namespace VelmoraQuavin::internal::platform {

/// A message that says what failed, followed by the text for the error number.
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

/// Writes all bytes to an open file; on failure GetLastError() tells why.
bool writeWhole(HANDLE file, const void* bytes, std::uint64_t count) noexcept;

}  // namespace VelmoraQuavin::internal::platform
