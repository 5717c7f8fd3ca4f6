// Names and paths that are too long for the system or for its file systems.
//
// Windows limits a path to 259 UTF-16 units (247 for a directory to be created) unless both the
// program and the system allow more, and a name to 255 units. wine has no such limit on paths and
// keeps names on the host's file system, with up to 255 bytes of UTF-8; it reports an entry whose
// name is too long as missing. Only what both have in common is expected.

#include "unit/package/path/path_cases.h"

namespace VelmoraQuavin::testing {
namespace {

std::string repeated(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

}  // namespace

std::vector<PathCase> pathLengthCases() {
    const std::string long100 = repeated("x", 100);
    const std::string longest = repeated("x", 255);
    const std::string tooLong = repeated("x", 256);
    const std::string manyBytes = repeated("名", 86);  // 258 bytes, 86 UTF-16 units
    const std::string around260 = repeated("folder\\..\\", 30) + "folder\\";
    const std::string farBeyond = repeated("missing\\", 1000);
    return {
        same("LongName", kWrite, long100, "done, +" + long100 + "=text"),
        depends("path-length", "LongestName", kWrite, longest, "done, +" + longest + "=text"),
        depends("path-length", "LongestNameMissing", kExists, longest, "false"),
        same("TooLongNameToCreate", kCreateDir, tooLong, "done"),
        same("TooLongNameToRead", kRead, tooLong, "null"),
        same("TooLongNameToMeasure", kSize, tooLong, "throws"),
        same("TooLongNameToWrite", kWrite, tooLong, "done"),
        same("TooLongNameToDelete", kDelete, tooLong, "throws"),
        depends("name-length", "TooLongNameExists", kExists, tooLong, "true"),
        depends("name-length", "TooManyBytesToWrite", kWrite, manyBytes, "done"),
        depends("name-length", "TooManyBytesExist", kExists, manyBytes, "true"),
        depends("path-length", "LongPath", kRead, around260 + "inner", "inner"),
        depends("path-length", "LongPathToCreate", kCreateDir, around260 + "new",
                "done, +folder/new/"),
        same("FarTooLongPathExists", kExists, farBeyond + "file", "true"),
        same("FarTooLongPathToRead", kRead, farBeyond + "file", "null"),
        same("FarTooLongPathToMeasure", kSize, farBeyond + "file", "throws"),
        same("FarTooLongPathToWrite", kWrite, farBeyond + "file", "done"),
        same("FarTooLongPathToDelete", kDelete, farBeyond + "file", "throws"),
        depends("path-length", "FarTooLongPathToCreate", kCreateDir, farBeyond + "new", "done"),
    };
}

}  // namespace VelmoraQuavin::testing
