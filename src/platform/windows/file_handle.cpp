#include "platform/windows/file_handle.h"

#include <algorithm>
#include <array>
#include <system_error>
#include <utility>

#include "platform/largest_transfer.h"
#include "platform/windows/wide_path.h"

namespace VelmoraQuavin::internal::platform {

std::string problemText(const char* what, DWORD error) {
    // Worded as on other systems if they know the error.
    const std::error_condition known =
        std::system_category().default_error_condition(static_cast<int>(error));
    if (known.category() == std::generic_category()) {
        return std::string(what) + ": " + known.message();
    }
    std::array<wchar_t, 512> text{};
    const DWORD length =
        ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error,
                         0, text.data(), static_cast<DWORD>(text.size()), nullptr);
    std::wstring_view line(text.data(), length);
    line = line.substr(0, line.find_last_not_of(L".\r\n ") + 1);
    return std::string(what) + ": " +
           (line.empty() ? "error " + std::to_string(error) : utf8Text(line));
}

FileHandle::FileHandle(FileHandle&& other) noexcept
    : handle_(std::exchange(other.handle_, INVALID_HANDLE_VALUE)) {}

FileHandle& FileHandle::operator=(FileHandle&& other) noexcept {
    if (this != &other) {
        close();
        handle_ = std::exchange(other.handle_, INVALID_HANDLE_VALUE);
    }
    return *this;
}

FileHandle::~FileHandle() {
    close();
}

void FileHandle::close() {
    if (handle_ != INVALID_HANDLE_VALUE) {
        ::CloseHandle(handle_);
    }
}

bool writeWhole(HANDLE file, const void* bytes, std::uint64_t count) noexcept {
    const auto* next = static_cast<const char*>(bytes);
    while (count > 0) {
        DWORD written = 0;
        const auto step = static_cast<DWORD>(std::min(count, kLargestTransfer));
        if (::WriteFile(file, next, step, &written, nullptr) == 0 || written == 0) {
            return false;
        }
        next += written;
        count -= written;
    }
    return true;
}

}  // namespace VelmoraQuavin::internal::platform
