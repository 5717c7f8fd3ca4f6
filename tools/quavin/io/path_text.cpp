#include "tools/quavin/io/path_text.h"

#include <algorithm>
#include <cstddef>

#include "text/unicode.h"

namespace quavin_tool {

namespace fs = std::filesystem;
using VelmoraQuavin::Filepath;

fs::path systemPath(const std::string& path) {
    try {
        return fs::u8path(path);
    } catch (const fs::filesystem_error&) {
        return fs::u8path(VelmoraQuavin::internal::printableText(path));
    }
}

std::string shellPath(const Filepath& path) {
    std::string text = VelmoraQuavin::String(path.c_str()).str();
    for (char& character : text) {
        if (character == '\\') {
            character = static_cast<char>(fs::path::preferred_separator);
        }
    }
    // Keep the separator of a root: without it, "C:\" would be a different directory.
    const std::size_t root = systemPath(text).root_path().u8string().size();
    while (text.size() > std::max<std::size_t>(root, 1) &&
           (text.back() == '/' || text.back() == '\\')) {
        text.pop_back();
    }
    return text;
}

std::string componentPath(const std::string& package, const VelmoraQuavin::String& path) {
    return shellPath(Filepath(package).append(Filepath(path)));
}

std::string join(const std::string& directory, const std::string& name) {
    return (fs::u8path(directory) / fs::u8path(name)).u8string();
}

std::string fileName(const std::string& path) {
    const fs::path file = fs::u8path(path);
    // If the path ends in a separator, its last part is empty.
    return (file.has_filename() ? file : file.parent_path()).filename().u8string();
}

std::string stemOf(const std::string& path) {
    return fs::u8path(fileName(path)).stem().u8string();
}

}  // namespace quavin_tool
