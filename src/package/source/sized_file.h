#pragma once

#include <optional>
#include <string>

#include "platform/input_file.h"
#include "quavin/files.h"
#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// A file opened to be read once, from the beginning to the end, or mapped, and its size at that
/// moment. If the file has shrunk since, the missing bytes are read as zeros.
class SizedFile {
public:
    /// Opens a file; returns nothing on failure.
    /// @param problem receives a human-readable reason on failure.
    /// @throws std::range_error "bad conversion" if the path is not UTF-8.
    static std::optional<SizedFile> tryOpen(const Filepath& path, std::string& problem);
    /// Opens a file; on failure the diagnostics tell why.
    /// @throws FileException "File error!" if it cannot be opened.
    /// @throws std::range_error "bad conversion" if the path is not UTF-8.
    static SizedFile open(const Filepath& path);

    uint64 size() const { return file_.size(); }
    /// Reads size() bytes, and no more even if the file has grown; bytes that could not be read are
    /// zeros.
    /// @param problem receives a human-readable reason if reading fails.
    /// @return whether the system could read the file.
    bool tryRead(char* buffer, std::string& problem);
    /// Reads the next `count` bytes, otherwise as above, but throws; the diagnostics tell why it
    /// failed.
    /// @throws FileException "File error!" if the system cannot read the file.
    void read(char* buffer, uint64 count);
    /// Maps size() bytes into memory; on failure the diagnostics tell why.
    /// @throws FileException "File error!" if the system cannot map the file.
    platform::MappedFile map() const;

private:
    SizedFile(Filepath path, platform::InputFile file);
    // Returns why it failed.
    std::string readOrZero(char* buffer, uint64 count);

    Filepath path_;
    platform::InputFile file_;
};

}  // namespace VelmoraQuavin::internal
