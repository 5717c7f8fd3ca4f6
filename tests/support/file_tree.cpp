#include "support/file_tree.h"

#include <array>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "support/crypto.h"

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

std::string describe(const fs::directory_entry& entry) {
    const fs::file_status status = entry.symlink_status();
    switch (status.type()) {
        case fs::file_type::directory:
            return kDirectoryInTree;
        case fs::file_type::regular:
            return fileInTree(contentOf(entry.path()));
        case fs::file_type::symlink:
            return linkInTree(fs::read_symlink(entry.path()).u8string());
        default:
            return "something else";
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

FileTree treeOf(const fs::path& root) {
    FileTree tree;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
        tree[entry.path().lexically_relative(root).generic_u8string()] = describe(entry);
    }
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
