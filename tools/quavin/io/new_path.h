#pragma once

#include <string>
#include <vector>

namespace quavin_tool {

/// @throws InvalidArgumentsException if the path exists.
void requireAbsent(const std::string& path);
/// @param advice what to do about a name that not every system allows.
/// @throws InvalidArgumentsException if the path ends in such a name.
void requirePortableName(const std::string& path, const std::string& advice);
/// Renames a file or directory without replacing anything.
/// @param shown the new name as the user gave it.
/// @throws InvalidArgumentsException if the new name is taken; FileException if renaming fails.
void moveToNew(const std::string& from, const std::string& to, const std::string& shown);
/// Whether a path exists, even as a dangling link.
bool isThere(const std::string& path);

/// Creates a directory and its missing parents. Unless told to keep them, removes those that it
/// created and that are still empty.
class NewDirectories {
public:
    /// @throws FileException if the directory cannot be created.
    explicit NewDirectories(const std::string& path);
    NewDirectories(const NewDirectories&) = delete;
    NewDirectories& operator=(const NewDirectories&) = delete;
    ~NewDirectories();

    void keep() { made_.clear(); }

private:
    std::vector<std::string> made_;  // innermost first
};

}  // namespace quavin_tool
