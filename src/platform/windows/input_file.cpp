#include "platform/input_file.h"

#include <windows.h>

#include <algorithm>
#include <utility>

#include "platform/windows/file_handle.h"
#include "platform/windows/wide_path.h"

namespace VelmoraQuavin::internal::platform {
namespace {

// ReadFile counts in 32 bits.
constexpr std::uint64_t kLargestRead = std::uint64_t{1} << 30;

}  // namespace

class InputFile::Implementation {
public:
    explicit Implementation(FileHandle opened) : file(std::move(opened)) {}

    FileHandle file;
};

InputFile::InputFile(std::unique_ptr<Implementation> implementation, std::uint64_t size)
    : implementation_(std::move(implementation)), size_(size) {}
InputFile::InputFile(InputFile&& other) noexcept = default;
InputFile& InputFile::operator=(InputFile&& other) noexcept = default;
InputFile::~InputFile() = default;

std::optional<InputFile> InputFile::open(const String& path, std::string& problem) {
    const std::wstring wide = widePath(path);  // freed only after the error number is read
    // The flag allows opening directories too, so that they can be recognised as such.
    FileHandle file(::CreateFileW(wide.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                  nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!file) {
        problem = problemText("cannot be opened", ::GetLastError());
        return std::nullopt;
    }
    LARGE_INTEGER size{};
    if (!isPlainFile(file.get()) || ::GetFileSizeEx(file.get(), &size) == 0) {
        problem = "is not a regular file";
        return std::nullopt;
    }
    return InputFile(std::make_unique<Implementation>(std::move(file)),
                     static_cast<std::uint64_t>(size.QuadPart));
}

std::string InputFile::read(void* buffer, std::uint64_t& got) {
    auto* const bytes = static_cast<char*>(buffer);
    got = 0;
    while (got < size_) {
        DWORD count = 0;
        if (::ReadFile(implementation_->file.get(), bytes + got,
                       static_cast<DWORD>((std::min)(size_ - got, kLargestRead)), &count,
                       nullptr) == 0) {
            return problemText("cannot be read", ::GetLastError());
        }
        if (count == 0) {
            break;
        }
        got += count;
    }
    return "";
}

}  // namespace VelmoraQuavin::internal::platform
