#include "fuzz/guarded_destination.h"

#include <filesystem>

#include "fuzz/promise.h"

namespace quavin_fuzz {
namespace {

namespace fs = std::filesystem;
using VelmoraQuavin::testing::DirectoryEntry;
using VelmoraQuavin::testing::entriesOf;

// Two levels, so that "../x" and "../../x" are both noticed.
constexpr const char* kDestination = "parent/destination";
constexpr const char* kFarFile = "far_file";
constexpr const char* kNearFile = "parent/near_file";
constexpr const char* kContent = "must not change";

std::set<std::string> namesIn(const fs::path& directory) {
    std::set<std::string> names;
    for (const DirectoryEntry& entry : entriesOf(directory)) {
        names.insert(entry.name.u8string());
    }
    return names;
}

}  // namespace

GuardedDestination::GuardedDestination(Links links) : links_(links) {
    around_.write(kFarFile, kContent);
    around_.write(kNearFile, kContent);
    createDestination();
    namesAtFirst_ = namesIn(around_.path() / kDestination);
}

VelmoraQuavin::Filepath GuardedDestination::path() const {
    return around_.entry("parent\\destination");
}

void GuardedDestination::createDestination() const {
    const fs::path destination = around_.path() / kDestination;
    fs::create_directory(destination);
#ifndef _WIN32
    if (links_ == Links::kOutside) {
        fs::create_directory_symlink("..", destination / "link");
        fs::create_symlink("../near_file", destination / "file_link");
    }
#endif
}

void GuardedDestination::checkAndEmpty() const {
    require(
        namesIn(around_.path()) == std::set<std::string>{"far_file", "parent"} &&
            namesIn(around_.path() / "parent") == std::set<std::string>{"destination", "near_file"},
        "nothing is created outside the destination");
    require(around_.read(kFarFile) == kContent && around_.read(kNearFile) == kContent,
            "no file outside the destination changes");
    const fs::path destination = around_.path() / kDestination;
    if (namesIn(destination) != namesAtFirst_) {
        VelmoraQuavin::testing::removeTree(destination);
        createDestination();
    }
}

}  // namespace quavin_fuzz
