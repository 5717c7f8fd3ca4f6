#include <windows.h>

#include <utility>

#include "platform/input_file_implementation.h"
#include "platform/windows/file_handle.h"
#include "platform/windows/wide_path.h"

namespace VelmoraQuavin::internal::platform {
namespace {

class OpenFile : public InputFile::Implementation {
public:
    explicit OpenFile(FileHandle file) : file_(std::move(file)) {}

    std::string readSome(void* buffer, std::size_t count, std::size_t& got) override {
        DWORD read = 0;
        if (::ReadFile(file_.get(), buffer, static_cast<DWORD>(count), &read, nullptr) == 0) {
            return problemText("cannot be read", ::GetLastError());
        }
        got = read;
        return "";
    }

private:
    FileHandle file_;
};

}  // namespace

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
    return InputFile(std::make_unique<OpenFile>(std::move(file)),
                     static_cast<std::uint64_t>(size.QuadPart));
}

}  // namespace VelmoraQuavin::internal::platform
