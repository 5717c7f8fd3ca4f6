#pragma once

#include <filesystem>

namespace VelmoraQuavin::testing {

/// During its lifetime, this process can open a file, but every attempt to read it fails. Only one
/// may exist at a time.
class UnreadableFile {
public:
    explicit UnreadableFile(const std::filesystem::path& path);
    UnreadableFile(const UnreadableFile&) = delete;
    UnreadableFile& operator=(const UnreadableFile&) = delete;
    ~UnreadableFile();
};

}  // namespace VelmoraQuavin::testing
