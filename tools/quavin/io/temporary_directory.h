#pragma once

#include <string>

namespace quavin_tool {

/// A new directory that only its owner may enter, removed with its content on destruction.
class TemporaryDirectory {
public:
    /// @param parent where to create it; if empty, in the system's directory for temporary files.
    /// @throws FileException if it cannot be created.
    explicit TemporaryDirectory(const std::string& parent = {});
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory();

    const std::string& path() const { return path_; }

private:
    std::string path_;
};

}  // namespace quavin_tool
