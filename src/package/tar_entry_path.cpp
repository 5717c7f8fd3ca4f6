#include "package/tar_entry_path.h"

#include <utf8.h>

#include <algorithm>

namespace VelmoraQuavin::internal {
namespace {

// What Linux takes as one path; more would only build towers of directories.
constexpr std::size_t kLongestName = 4096;

constexpr std::string_view kSeparators = "/\\";

bool isLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

bool beginsWithDrive(std::string_view name) {
    return name.size() >= 2 && isLetter(name[0]) && name[1] == ':';
}

std::vector<std::string> split(std::string_view name) {
    std::vector<std::string> parts;
    while (!name.empty()) {
        const std::size_t end = std::min(name.find_first_of(kSeparators), name.size());
        const std::string_view part = name.substr(0, end);
        if (!part.empty() && part != ".") {
            parts.emplace_back(part);
        }
        name.remove_prefix(std::min(end + 1, name.size()));
    }
    return parts;
}

std::string refusalOf(std::string_view name, const std::vector<std::string>& parts) {
    if (name.empty()) {
        return "it has no name";
    }
    if (name.size() > kLongestName) {
        return "its name is longer than 4096 bytes";
    }
    if (!utf8::is_valid(name.begin(), name.end())) {
        return "its name is not UTF-8";
    }
    if (kSeparators.find(name.front()) != std::string_view::npos) {
        return "its name is absolute";
    }
    if (!parts.empty() && beginsWithDrive(parts.front())) {
        return "its name begins with a drive letter";
    }
    for (const std::string& part : parts) {
        if (part == "..") {
            return "its name holds \"..\"";
        }
    }
    return "";
}

}  // namespace

TarEntryPath parseTarEntryPath(std::string_view name) {
    TarEntryPath path{split(name), ""};
    path.refusal = refusalOf(name, path.names);
    return path;
}

}  // namespace VelmoraQuavin::internal
