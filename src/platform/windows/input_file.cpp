#include <windows.h>

#include <utility>

#include "platform/input_file_implementation.h"
#include "platform/windows/file_handle.h"
#include "platform/windows/file_mapping.h"
#include "platform/windows/regular_file.h"

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
    std::optional<MappedFile> map(std::size_t size, std::string& problem) const override {
        return mapFile(file_, size, problem);
    }

private:
    FileHandle file_;
};

}  // namespace

std::optional<InputFile> InputFile::open(const String& path, std::string& problem) {
    std::optional<RegularFile> file =
        openRegularFile(path, FILE_SHARE_READ | FILE_SHARE_WRITE, problem);
    if (!file) {
        return std::nullopt;
    }
    return InputFile(std::make_unique<OpenFile>(std::move(file->handle)), file->size);
}

}  // namespace VelmoraQuavin::internal::platform
