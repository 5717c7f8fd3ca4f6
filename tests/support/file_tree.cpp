#include "support/file_tree.h"

#include <array>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "support/crypto.h"
#include "support/system.h"

namespace VelmoraQuavin::testing {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kFile = "file: ";

std::string contentOf(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    std::string content{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (!stream.is_open()) {
        throw std::runtime_error("cannot read " + path.string());
    }
    return content;
}

std::string describe(const fs::path& path, EntryKind kind) {
    switch (kind) {
        case EntryKind::kDirectory:
            return kDirectoryInTree;
        case EntryKind::kFile:
            return fileInTree(contentOf(path));
        case EntryKind::kLink:
            return linkInTree(fs::read_symlink(path).u8string());
        default:
            return "something else";
    }
}

// `prefix` is prepended to the names of the directory's entries.
void addTo(FileTree& tree, const fs::path& directory, const std::string& prefix) {
    for (const DirectoryEntry& entry : entriesOf(directory)) {
        const fs::path path = directory / entry.name;
        const std::string name = prefix + entry.name.u8string();
        tree[name] = describe(path, entry.kind);
        if (entry.kind == EntryKind::kDirectory) {
            addTo(tree, path, name + "/");
        }
    }
}

std::string digestOf(std::string_view content) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (const unsigned char byte : sha256(content)) {
        text += kDigits[byte / 16u];
        text += kDigits[byte % 16u];
    }
    return text;
}

}  // namespace

std::string fileInTree(std::string_view content) {
    return std::string(kFile).append(content);
}

std::string linkInTree(const std::string& target) {
    return "link to " + target;
}

FileTree treeOf(const fs::path& directory) {
    FileTree tree;
    addTo(tree, longPath(directory), "");
    return tree;
}

std::string listingOf(const FileTree& tree) {
    std::string listing;
    for (const auto& [path, what] : tree) {
        if (what == kDirectoryInTree) {
            listing += "directory " + path + "\n";
        } else if (what.compare(0, kFile.size(), kFile) == 0) {
            const std::string content = what.substr(kFile.size());
            listing += "file " + std::to_string(content.size()) + " " + digestOf(content) + " " +
                       path + "\n";
        } else {
            throw std::runtime_error("neither a file nor a directory: " + path);
        }
    }
    return listing;
}

}  // namespace VelmoraQuavin::testing
