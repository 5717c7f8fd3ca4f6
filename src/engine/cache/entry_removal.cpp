#include "engine/cache/entry_removal.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <tuple>
#include <utility>
#include <vector>

#include "core/diagnostics.h"
#include "platform/directory_listing.h"
#include "platform/file_system.h"

namespace VelmoraQuavin::internal {
namespace {

namespace fs = std::filesystem;

struct Entry {
    fs::file_time_type written;
    fs::path path;
    std::uint64_t size = 0;
};

// Newest first; the name decides between entries of one moment.
bool isNewer(const Entry& left, const Entry& right) {
    return std::tie(left.written, left.path) > std::tie(right.written, right.path);
}

// Nothing for anything but a regular file, and if another process has removed it.
void addFile(fs::path path, std::vector<Entry>& entries) {
    std::error_code failure;
    Entry entry;
    if (!fs::is_regular_file(fs::symlink_status(path, failure)) || failure) {
        return;
    }
    entry.size = fs::file_size(path, failure);
    if (failure) {
        return;
    }
    entry.written = fs::last_write_time(path, failure);
    if (!failure) {
        entry.path = std::move(path);
        entries.push_back(std::move(entry));
    }
}

}  // namespace

std::string removeOldEntries(const String& directory, const EntryName& kept, std::uint64_t room) {
    std::vector<std::string> names;
    std::string problem = platform::listDirectory(directory, names);
    if (!problem.empty()) {
        return inQuotes(directory) + " " + problem;
    }
    const fs::path folder = platform::standardPath(directory);
    const std::string keptName = kept.fileName();
    std::vector<Entry> entries;
    for (const std::string& name : names) {
        if (EntryName::isFileName(name) && name != keptName) {
            addFile(folder / name, entries);
        }
    }
    std::sort(entries.begin(), entries.end(), isNewer);
    bool isFull = false;
    for (const Entry& entry : entries) {
        std::error_code failure;
        isFull = isFull || entry.size > room;
        if (!isFull) {
            room -= entry.size;
        } else if (fs::remove(entry.path, failure); failure && problem.empty()) {
            problem = inQuotes(entry.path.u8string()) + " cannot be removed: " + failure.message();
        }
    }
    return problem;
}

}  // namespace VelmoraQuavin::internal
