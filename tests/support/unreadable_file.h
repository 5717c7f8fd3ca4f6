#pragma once

#include <filesystem>
#include <memory>

namespace VelmoraQuavin::testing {

/// While it lives, a file can be opened by this process, and every attempt to read it fails.
class UnreadableFile {
public:
    explicit UnreadableFile(const std::filesystem::path& path);
    UnreadableFile(const UnreadableFile&) = delete;
    UnreadableFile& operator=(const UnreadableFile&) = delete;
    ~UnreadableFile();

private:
    class Implementation;

    std::unique_ptr<Implementation> implementation_;
};

}  // namespace VelmoraQuavin::testing
