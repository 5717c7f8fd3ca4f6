#pragma once

#include <string>
#include <vector>

namespace quavin_tool {

/// @throws InvalidArgumentsException where something is there.
void requireAbsent(const std::string& path);
/// @param advice what to do about a name that not every system takes.
/// @throws InvalidArgumentsException where the last name of a path is one.
void requirePortableName(const std::string& path, const std::string& advice);
/// Gives a file or directory another name, where nothing is there at that moment.
/// @param shown the new name as the user gave it.
/// @throws InvalidArgumentsException where something is there; FileException where it fails.
void moveToNew(const std::string& from, const std::string& to, const std::string& shown);
/// Whether something is there, be it a link that leads nowhere.
bool isThere(const std::string& path);

/// Makes a directory and what is missing above it, and removes what it has made unless it is told
/// to keep it. What is not empty by then stays.
class NewDirectories {
public:
    /// @throws FileException where the directory cannot be made.
    explicit NewDirectories(const std::string& path);
    NewDirectories(const NewDirectories&) = delete;
    NewDirectories& operator=(const NewDirectories&) = delete;
    ~NewDirectories();

    void keep() { made_.clear(); }

private:
    std::vector<std::string> made_;  // the innermost first
};

}  // namespace quavin_tool
