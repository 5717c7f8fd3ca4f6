#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace VelmoraQuavin::internal::platform {

/// Flags to open a directory that is only traversed, which requires no right to list it.
#if defined(O_PATH)
constexpr int kPassThrough = O_PATH | O_DIRECTORY | O_CLOEXEC;
#else
constexpr int kPassThrough = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
#endif

/// Owns an open file descriptor, or none.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept
        : descriptor_(std::exchange(other.descriptor_, kNone)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            close();
            descriptor_ = std::exchange(other.descriptor_, kNone);
        }
        return *this;
    }
    ~FileDescriptor() { close(); }

    explicit operator bool() const { return descriptor_ != kNone; }
    int get() const { return descriptor_; }
    /// @return false if written data may be lost; errno tells why.
    bool close() { return descriptor_ == kNone || ::close(std::exchange(descriptor_, kNone)) == 0; }

private:
    static constexpr int kNone = -1;

    int descriptor_ = kNone;
};

}  // namespace VelmoraQuavin::internal::platform
