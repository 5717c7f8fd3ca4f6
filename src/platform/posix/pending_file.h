#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>

#include "platform/posix/file_descriptor.h"

namespace VelmoraQuavin::internal::platform {

/// A file in the making: it stands beside its place under a name of its own until it is whole, and
/// goes unless it is put there. What a killed process has left is removed by the next one that
/// comes to the same name: a living one holds a lock on its file. No link is followed, and nothing
/// is touched that is not this user's and marked as unfinished.
class PendingFile {
public:
    /// Makes the file; errno tells why it could not.
    /// @param directory stays open as long as this lives.
    /// @param mode of the finished file, before the process's umask.
    PendingFile(int directory, mode_t mode);
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;
    ~PendingFile();

    explicit operator bool() const { return static_cast<bool>(file_); }

    /// Writes at the end; errno tells why it failed.
    bool write(const void* bytes, std::uint64_t count);
    /// Gives the finished file another mode, whatever the umask is.
    void setMode(mode_t mode) { mode_ = mode; }
    /// Puts the file in its place, over a file that is there; errno tells why it failed.
    bool replace(const std::string& name);
    /// Puts the file where nothing is; errno is EEXIST where something is.
    bool publish(const std::string& name);

private:
    bool open(const std::string& name, mode_t mode);
    bool flush();
    void finish();

    int directory_;
    FileDescriptor file_;
    std::string name_;  // empty once it is in its place
    mode_t mode_ = 0;
};

}  // namespace VelmoraQuavin::internal::platform
