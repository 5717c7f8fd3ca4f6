#pragma once

#include <string>

namespace quavin_tool {

/// A new empty directory that its owner alone may enter, removed with its content at the end.
class TemporaryDirectory {
public:
    /// @param parent where to make it; the system's place for such where it is empty.
    /// @throws FileException where it cannot be made.
    explicit TemporaryDirectory(const std::string& parent = {});
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory();

    const std::string& path() const { return path_; }

private:
    std::string path_;
};

}  // namespace quavin_tool
