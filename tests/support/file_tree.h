#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace VelmoraQuavin::testing {

/// The contents of a directory: maps each path, with "/" between its parts, to its entry.
using FileTree = std::map<std::string, std::string>;

/// A directory in a tree.
const std::string kDirectoryInTree = "directory";
/// A file in a tree.
std::string fileInTree(std::string_view content);
/// A symbolic link in a tree.
std::string linkInTree(const std::string& target);

/// The current contents of `directory`. Links are not followed.
FileTree treeOf(const std::filesystem::path& directory);

/// A line for each entry, sorted: "directory PATH", or "file SIZE SHA-256 PATH".
/// @throws std::runtime_error if there is any other kind of entry.
std::string listingOf(const FileTree& tree);

}  // namespace VelmoraQuavin::testing
