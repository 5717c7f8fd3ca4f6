#include "support/system.h"

#include <iterator>

namespace VelmoraQuavin::testing {
namespace {

namespace fs = std::filesystem;

EntryKind kindOf(const fs::directory_entry& entry) {
    switch (entry.symlink_status().type()) {
        case fs::file_type::regular:
            return EntryKind::kFile;
        case fs::file_type::directory:
            return EntryKind::kDirectory;
        case fs::file_type::symlink:
            return EntryKind::kLink;
        default:
            return EntryKind::kOther;
    }
}

}  // namespace

std::string whiteSpaceOfNames() {
    return " \t\n\v\f\r";
}

fs::path longPath(const fs::path& path) {
    return path;
}

bool narrowPathsAreUtf8() {
    return true;
}

std::vector<DirectoryEntry> entriesOf(const fs::path& directory) {
    std::vector<DirectoryEntry> entries;
    for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
        entries.push_back({entry.path().filename(), kindOf(entry)});
    }
    return entries;
}

bool runsUnderWine() {
    return false;
}

std::size_t openFiles() {
    const fs::directory_iterator files("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(fs::begin(files), fs::end(files)));
}

void removeTree(const fs::path& directory) noexcept {
    std::error_code ignored;
    fs::remove_all(directory, ignored);
}

}  // namespace VelmoraQuavin::testing
