#pragma once

#include <string>
#include <vector>

namespace VelmoraQuavin::testing {

enum class PathOperation {
    kCreateDir,
    kExists,
    kRead,
    kSize,
    kWrite,
    kWriteLine,  // writes a text that contains a line end
    kDelete,
    kDeleteOpen  // while a stream has the file open
};

/// One path text, the operation on it, and the outcome on each kind of system.
///
/// The working directory is new and contains what fillDirectory() writes. In the path, "{}" stands
/// for the directory's full path and "{drive}" for its drive ("C:" on POSIX systems).
///
/// An outcome is the result of the call ("done", "throws", "bad conversion", "true", "false",
/// "null", the content or a size), followed by each change below the directory: ", +new/",
/// ", +new=text", ", -file".
struct PathCase {
    std::string name;
    PathOperation operation;
    std::string path;
    std::string posix;
    /// Empty if it depends on the installation, so that nothing can be expected.
    std::string windows;
    /// Why the systems differ: a key of the table in docs/porting.md. Empty if they agree.
    std::string difference;
};

using Cases = std::vector<PathCase>;

// Short names for the tables.
inline constexpr PathOperation kCreateDir = PathOperation::kCreateDir;
inline constexpr PathOperation kExists = PathOperation::kExists;
inline constexpr PathOperation kRead = PathOperation::kRead;
inline constexpr PathOperation kSize = PathOperation::kSize;
inline constexpr PathOperation kWrite = PathOperation::kWrite;
inline constexpr PathOperation kWriteLine = PathOperation::kWriteLine;
inline constexpr PathOperation kDelete = PathOperation::kDelete;
inline constexpr PathOperation kDeleteOpen = PathOperation::kDeleteOpen;

/// A case in which the systems agree.
PathCase same(const std::string& name, PathOperation operation, const std::string& path,
              const std::string& outcome);
/// A case in which the systems differ.
PathCase differs(const std::string& difference, const std::string& name, PathOperation operation,
                 const std::string& path, const std::string& posix, const std::string& windows);
/// A case whose outcome on Windows depends on the installation.
PathCase depends(const std::string& difference, const std::string& name, PathOperation operation,
                 const std::string& path, const std::string& posix);

/// Separators, ".", "..", the empty path, zero bytes, paths through files.
std::vector<PathCase> pathTextCases();
/// Names: outside ASCII, not UTF-8, upper and lower case, characters that a system reserves.
std::vector<PathCase> pathNameCases();
/// Names and whole paths that are too long.
std::vector<PathCase> pathLengthCases();
/// Drives, devices, prefixes, files that are open or read-only.
std::vector<PathCase> pathSystemCases();
/// All cases.
std::vector<PathCase> pathCases();

/// Writes the files that every case starts with.
void fillDirectory();
/// Runs a case in the working directory, whose path text is `directory`, and returns the outcome.
std::string outcomeOf(const PathCase& pathCase, const std::string& directory);

/// Whether paths on this system work as on Windows.
bool hasWindowsPaths();

}  // namespace VelmoraQuavin::testing
