#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/input_file_implementation.h"
#include "platform/posix/file_descriptor.h"
#include "platform/posix/native_path.h"
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

private:
    FileDescriptor file_;
};

}  // namespace

std::optional<InputFile> InputFile::open(const String& path, std::string& problem) {
    // Non-blocking, so that a pipe without a writer is an error instead of a hang.
    FileDescriptor file(
        ::open(nativeUtf8Path(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file) {
        problem = problemText("cannot be opened", errno);
        return std::nullopt;
    }
    struct stat attributes {};
    if (::fstat(file.get(), &attributes) != 0 || !S_ISREG(attributes.st_mode)) {
        problem = "is not a regular file";
        return std::nullopt;
    }
    return InputFile(std::make_unique<OpenFile>(std::move(file)),
                     static_cast<std::uint64_t>(attributes.st_size));
}

}  // namespace VelmoraQuavin::internal::platform
