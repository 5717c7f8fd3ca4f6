#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>

#include "platform/posix/file_descriptor.h"

namespace VelmoraQuavin::internal::platform {

/// A file being written: it stays next to its final place under a temporary name until it is
/// complete, and is removed unless it is moved into place. What a killed process leaves behind is
/// removed by the next process that tries the same name; a live process holds a lock on its file.
/// No link is followed, and only files that belong to this user and are marked as unfinished are
/// removed.
class PendingFile {
public:
    /// Creates the file; on failure errno tells why.
    /// @param directory must stay open for the lifetime of this object.
    /// @param mode the mode of the finished file, before the process's umask.
    PendingFile(int directory, mode_t mode);
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;
    ~PendingFile();

    explicit operator bool() const { return static_cast<bool>(file_); }

    /// Appends to the file; on failure errno tells why.
    bool write(const void* bytes, std::uint64_t count);
    /// Sets the mode of the finished file, regardless of the umask.
    void setMode(mode_t mode) { mode_ = mode; }
    /// Moves the file into place, replacing any existing one; on failure errno tells why.
    bool replace(const std::string& name);
    /// Moves the file into place without replacing anything; errno is EEXIST if the name is taken.
    bool publish(const std::string& name);

    /// Removes what killed processes have left in a directory, under the names that they share.
    static void removeAbandonedIn(int directory);

private:
    bool open(const std::string& name, mode_t mode);
    bool flush();
    void finish();

    int directory_;
    FileDescriptor file_;
    std::string name_;  // empty once the file is in place
    mode_t mode_ = 0;
};

}  // namespace VelmoraQuavin::internal::platform
