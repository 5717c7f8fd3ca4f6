#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace VelmoraQuavin::testing {

/// What tests have to know of the system that they run on, and what the standard library cannot do
/// on every one: some take long paths for other ones.

/// The white space that names of files may hold.
std::string whiteSpaceOfNames();

/// Whether createDir() and deleteFile() take UTF-8, as everything else does.
bool narrowPathsAreUtf8();

/// A path that the system takes however long it is.
std::filesystem::path longPath(const std::filesystem::path& path);

enum class EntryKind { kFile, kDirectory, kLink, kOther };

struct DirectoryEntry {
    std::filesystem::path name;
    EntryKind kind;
};

/// What is in a directory itself. Links are not followed.
std::vector<DirectoryEntry> entriesOf(const std::filesystem::path& directory);

/// How many files and the like this process holds open.
std::size_t openFiles();

/// Removes a directory with everything in it, as far as that can be done.
void removeTree(const std::filesystem::path& directory) noexcept;

}  // namespace VelmoraQuavin::testing
