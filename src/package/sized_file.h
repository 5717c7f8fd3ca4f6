#pragma once

#include <fstream>
#include <optional>

#include "quavin/files.h"
#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// A file opened for reading whole, and the size that it had then.
class SizedFile {
public:
    /// Opens a file; nothing where that fails.
    /// @throws std::range_error "bad conversion" where the path is not UTF-8.
    static std::optional<SizedFile> tryOpen(const Filepath& path);
    /// Opens a file.
    /// @throws FileException "File error!" where that fails.
    /// @throws std::range_error "bad conversion" where the path is not UTF-8.
    static SizedFile open(const Filepath& path);

    uint64 size() const { return size_; }
    /// Reads size() bytes, no more if the file has grown; zeros stand for what could not be read.
    void read(char* buffer);

private:
    SizedFile(std::ifstream stream, uint64 size);

    std::ifstream stream_;
    uint64 size_;
};

}  // namespace VelmoraQuavin::internal
