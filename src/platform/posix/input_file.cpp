#include "platform/input_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/posix/file_descriptor.h"
#include "platform/posix/native_path.h"
#include "platform/posix/whole_write.h"

namespace VelmoraQuavin::internal::platform {
namespace {

// Some systems refuse larger reads.
constexpr std::uint64_t kLargestRead = std::uint64_t{1} << 30;

}  // namespace

class InputFile::Implementation {
public:
    explicit Implementation(FileDescriptor opened) : file(std::move(opened)) {}

    FileDescriptor file;
};

InputFile::InputFile(std::unique_ptr<Implementation> implementation, std::uint64_t size)
    : implementation_(std::move(implementation)), size_(size) {}
InputFile::InputFile(InputFile&& other) noexcept = default;
InputFile& InputFile::operator=(InputFile&& other) noexcept = default;
InputFile::~InputFile() = default;

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
    return InputFile(std::make_unique<Implementation>(std::move(file)),
                     static_cast<std::uint64_t>(attributes.st_size));
}

std::string InputFile::read(void* buffer, std::uint64_t& got) {
    auto* const bytes = static_cast<char*>(buffer);
    got = 0;
    while (got < size_) {
        const ssize_t count = ::read(implementation_->file.get(), bytes + got,
                                     static_cast<std::size_t>(std::min(size_ - got, kLargestRead)));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return problemText("cannot be read", errno);
        }
        if (count == 0) {
            break;
        }
        got += static_cast<std::uint64_t>(count);
    }
    return "";
}

}  // namespace VelmoraQuavin::internal::platform
