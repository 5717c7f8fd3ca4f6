#pragma once

#include <filesystem>
#include <memory>

namespace VelmoraQuavin::testing {

/// During its lifetime, this process can open a file, but every attempt to read it fails.
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
