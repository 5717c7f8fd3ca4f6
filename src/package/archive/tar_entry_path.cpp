#include "package/archive/tar_entry_path.h"

#include <utf8.h>

#include <algorithm>

namespace VelmoraQuavin::internal {
namespace {

// The longest path that Linux accepts.
constexpr std::size_t kLongestName = 4096;
// The longest name that most file systems accept.
constexpr std::size_t kLongestPart = 255;
// An archive of a few kilobytes must not create thousands of nested directories.
constexpr std::size_t kDeepest = 128;

bool isSeparator(char character) {
    return character == '/' || character == '\\';
}

bool isLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

bool beginsWithDrive(std::string_view name) {
    return name.size() >= 2 && isLetter(name[0]) && name[1] == ':';
}

std::vector<std::string> split(std::string_view name) {
    std::vector<std::string> parts;
    parts.reserve(static_cast<std::size_t>(std::count_if(name.begin(), name.end(), isSeparator)) +
                  1);
    const char* const end = name.data() + name.size();
    for (const char* begin = name.data(); begin != end;) {
        const char* const separator = std::find_if(begin, end, isSeparator);
        const std::string_view part(begin, static_cast<std::size_t>(separator - begin));
        if (!part.empty() && part != ".") {
            parts.emplace_back(part);
        }
        begin = separator == end ? end : separator + 1;
    }
    return parts;
}

// Files must not be named like directories: "x/." would be ambiguous.
bool endsInDot(std::string_view name) {
    return name == "." ||
           (name.size() > 1 && name.back() == '.' && isSeparator(name[name.size() - 2]));
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
    if (isSeparator(name.front())) {
        return "its name is absolute";
    }
    if (!parts.empty() && beginsWithDrive(parts.front())) {
        return "its name begins with a drive letter";
    }
    if (parts.size() > kDeepest) {
        return "its name has more than 128 parts";
    }
    for (const std::string& part : parts) {
        if (part == "..") {
            return "its name contains \"..\"";
        }
        if (part.size() > kLongestPart) {
            return "a part of its name is longer than 255 bytes";
        }
    }
    return "";
}

}  // namespace

TarEntryPath parseTarEntryPath(std::string_view name) {
    // The part of a name beyond the limit is not even split.
    TarEntryPath path{split(name.substr(0, kLongestName)), ""};
    path.refusal = refusalOf(name, path.names);
    path.isDirectory = path.names.empty() || endsInDot(name);
    return path;
}

}  // namespace VelmoraQuavin::internal
