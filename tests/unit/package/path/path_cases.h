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
    kWriteLine,  // writes a text with a line end
    kDelete,
    kDeleteOpen  // while a stream has the file open
};

/// One path text, what is done with it, and what comes of it on each kind of system.
///
/// The working directory is new and holds what fillDirectory() writes. In the path, "{}" stands for
/// its full path and "{drive}" for the drive that it is on ("C:" on POSIX systems).
///
/// An outcome is the call's ("done", "throws", "bad conversion", "true", "false", "null", a content
/// or a size), and then each change below the directory: ", +new/", ", +new=text", ", -file".
struct PathCase {
    std::string name;
    PathOperation operation;
    std::string path;
    std::string posix;
    /// Empty where it depends on the installation, and nothing can be expected.
    std::string windows;
    /// Why the systems differ: a key of the table in docs/porting.md. Empty where they agree.
    std::string difference;
};

using Cases = std::vector<PathCase>;

// The tables name them often.
inline constexpr PathOperation kCreateDir = PathOperation::kCreateDir;
inline constexpr PathOperation kExists = PathOperation::kExists;
inline constexpr PathOperation kRead = PathOperation::kRead;
inline constexpr PathOperation kSize = PathOperation::kSize;
inline constexpr PathOperation kWrite = PathOperation::kWrite;
inline constexpr PathOperation kWriteLine = PathOperation::kWriteLine;
inline constexpr PathOperation kDelete = PathOperation::kDelete;
inline constexpr PathOperation kDeleteOpen = PathOperation::kDeleteOpen;

/// The systems agree.
PathCase same(const std::string& name, PathOperation operation, const std::string& path,
              const std::string& outcome);
/// The systems differ.
PathCase differs(const std::string& difference, const std::string& name, PathOperation operation,
                 const std::string& path, const std::string& posix, const std::string& windows);
/// On Windows it depends on the installation.
PathCase depends(const std::string& difference, const std::string& name, PathOperation operation,
                 const std::string& path, const std::string& posix);

/// Separators, ".", "..", the empty path, zero bytes, paths through files.
std::vector<PathCase> pathTextCases();
/// Names: outside ASCII, not UTF-8, upper and lower case, characters that a system reserves.
std::vector<PathCase> pathNameCases();
/// Names and whole paths that are too long.
std::vector<PathCase> pathLengthCases();
/// Drives, devices, prefixes, files that are open or may not be changed.
std::vector<PathCase> pathSystemCases();
/// All of them.
std::vector<PathCase> pathCases();

/// Writes what every case finds in its directory.
void fillDirectory();
/// What comes of a case in the working directory, which is `directory` as a path text.
std::string outcomeOf(const PathCase& pathCase, const std::string& directory);

/// Whether paths work as on Windows here.
bool hasWindowsPaths();

}  // namespace VelmoraQuavin::testing
