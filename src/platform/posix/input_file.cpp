#include <sys/types.h>

#include <cerrno>
#include <utility>

#include "platform/input_file_implementation.h"
#include "platform/posix/file_descriptor.h"
#include "platform/posix/file_mapping.h"
#include "platform/posix/regular_file.h"
#include "platform/posix/whole_write.h"

namespace VelmoraQuavin::internal::platform {
namespace {

class OpenFile : public InputFile::Implementation {
public:
    explicit OpenFile(FileDescriptor file) : file_(std::move(file)) {}

    std::string readSome(void* buffer, std::size_t count, std::size_t& got) override {
        const ssize_t result = platform::readSome(file_.get(), buffer, count);
        if (result < 0) {
            return problemText("cannot be read", errno);
        }
        got = static_cast<std::size_t>(result);
        return "";
    }
    std::optional<MappedFile> map(std::size_t size, std::string& problem) const override {
        return mapFile(file_, size, problem);
    }

private:
    FileDescriptor file_;
};

}  // namespace

std::optional<InputFile> InputFile::open(const String& path, std::string& problem) {
    std::optional<RegularFile> file = openRegularFile(path, problem);
    if (!file) {
        return std::nullopt;
    }
    return InputFile(std::make_unique<OpenFile>(std::move(file->descriptor)),
                     static_cast<std::uint64_t>(file->attributes.st_size));
}

}  // namespace VelmoraQuavin::internal::platform
