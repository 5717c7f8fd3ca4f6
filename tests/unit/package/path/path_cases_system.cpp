// Texts with a special meaning on one system that are plain names on the other, and files in use.

#include "unit/package/path/path_cases.h"

namespace VelmoraQuavin::testing {
namespace {

std::vector<PathCase> drivesAndPrefixes() {
    return {
        differs("drives", "DriveAndName", kRead, "{drive}file", "null", "content"),
        differs("drives", "DriveAndNameToCreate", kCreateDir, "{drive}new", "done, +C:new/",
                "done, +new/"),
        differs("drives", "MissingDrive", kExists, "Q:", "false", "true"),
        differs("drives", "MissingDriveToCreate", kCreateDir, "Q:", "done, +Q:/", "throws"),
        // On Windows a missing drive is a missing parent; wine reports a missing entry.
        depends("drives", "BelowMissingDrive", kExists, "Q:\\file", "true"),
        depends("drives", "BelowMissingDriveToCreate", kCreateDir, "Q:\\new", "throws"),
        same("BelowMissingDriveToRead", kRead, "Q:\\file", "null"),
        same("BelowMissingDriveToWrite", kWrite, "Q:\\file", "done"),
        differs("prefixes", "VerbatimPath", kRead, R"(\\?\{}\file)", "null", "content"),
        differs("prefixes", "VerbatimPathMissing", kExists, R"(\\?\{}\missing)", "true", "false"),
        differs("prefixes", "VerbatimPathToCreate", kCreateDir, R"(\\?\{}\new)", "throws",
                "done, +new/"),
        differs("prefixes", "VerbatimPathToWrite", kWrite, R"(\\?\{}\new)", "done",
                "done, +new=text"),
        same("DevicePrefix", kRead, R"(\\.\NUL)", "null"),
    };
}

// Only bare names: since Windows 11, such names inside a directory are plain files.
std::vector<PathCase> devices() {
    return {
        same("NullDeviceToRead", kRead, "NUL", "null"),
        differs("devices", "NullDeviceExists", kExists, "NUL", "false", "true"),
        differs("devices", "NullDeviceInLowerCaseExists", kExists, "nul", "false", "true"),
        differs("devices", "NullDeviceToWrite", kWrite, "NUL", "done, +NUL=text", "done"),
        differs("devices", "NullDeviceToCreate", kCreateDir, "NUL", "done, +NUL/", "done"),
        differs("devices", "ConsoleExists", kExists, "CON", "false", "true"),
        differs("devices", "ConsoleToCreate", kCreateDir, "CON", "done, +CON/", "done"),
        same("NamesThatBeginLikeDevices", kWrite, "CONS", "done, +CONS=text"),
    };
}

std::vector<PathCase> filesInUse() {
    return {
        differs("line-ends", "LineEnd", kWriteLine, "new", "done, +new=a\nb", "done, +new=a\r\nb"),
        differs("open-files", "OpenFile", kDeleteOpen, "new", "done", "throws, +new="),
        differs("read-only", "ReadOnlyFile", kDelete, "locked", "done, -locked", "throws"),
    };
}

}  // namespace

std::vector<PathCase> pathSystemCases() {
    std::vector<PathCase> all;
    for (const auto& cases : {drivesAndPrefixes(), devices(), filesInUse()}) {
        all.insert(all.end(), cases.begin(), cases.end());
    }
    return all;
}

}  // namespace VelmoraQuavin::testing
