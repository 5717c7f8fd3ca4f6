#pragma once

#include <optional>
#include <string>

#include "platform/input_file.h"
#include "quavin/files.h"
#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// A file opened for reading whole, once, and the size that it had then. What a file lacks because
/// it became shorter meanwhile is read as zeros.
class SizedFile {
public:
    /// Opens a file; nothing where that fails.
    /// @param problem receives, for people, why it failed.
    /// @throws std::range_error "bad conversion" where the path is not UTF-8.
    static std::optional<SizedFile> tryOpen(const Filepath& path, std::string& problem);
    /// Opens a file; diagnostics tell why it fails.
    /// @throws FileException "File error!" where it does.
    /// @throws std::range_error "bad conversion" where the path is not UTF-8.
    static SizedFile open(const Filepath& path);

    uint64 size() const { return file_.size(); }
    /// Reads size() bytes, no more if the file has grown; zeros stand for what could not be read.
    /// @param problem receives, for people, why reading failed.
    /// @return whether the system could read the file.
    bool tryRead(char* buffer, std::string& problem);
    /// The same; diagnostics tell why it fails.
    /// @throws FileException "File error!" where the system cannot read the file.
    void read(char* buffer);

private:
    SizedFile(Filepath path, platform::InputFile file);

    Filepath path_;
    platform::InputFile file_;
};

}  // namespace VelmoraQuavin::internal
