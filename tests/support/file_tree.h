#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace VelmoraQuavin::testing {

/// What is below a directory: from each path, "/" between its parts, to what is there.
using FileTree = std::map<std::string, std::string>;

/// A directory in a tree.
const std::string kDirectoryInTree = "directory";
/// A file in a tree.
std::string fileInTree(std::string_view content);
/// A symbolic link in a tree.
std::string linkInTree(const std::string& target);

/// What is below `directory` now. Links are not followed.
FileTree treeOf(const std::filesystem::path& directory);

/// A line for each entry, sorted: "directory PATH", or "file SIZE SHA-256 PATH".
/// @throws std::runtime_error where there is anything else.
std::string listingOf(const FileTree& tree);

}  // namespace VelmoraQuavin::testing
