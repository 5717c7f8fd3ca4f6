#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace VelmoraQuavin::testing {

/// What tests need to know about the system they run on, and operations that the standard library
/// does not support on every system: on some it mistakes long paths for other ones.

/// The white space that file names may contain.
std::string whiteSpaceOfNames();

/// Whether createDir() and deleteFile() take UTF-8, as everything else does.
bool narrowPathsAreUtf8();

/// A form of the path that the system accepts whatever its length.
std::filesystem::path longPath(const std::filesystem::path& path);

enum class EntryKind { kFile, kDirectory, kLink, kOther };

struct DirectoryEntry {
    std::filesystem::path name;
    EntryKind kind;
};

/// The entries directly in a directory. Links are not followed.
std::vector<DirectoryEntry> entriesOf(const std::filesystem::path& directory);

/// The number of files and similar objects this process has open.
std::size_t openFiles();

/// Whether this program runs under wine, whose cryptography cannot import private keys on P-384,
/// and does not check whether the point of a public key is on its curve. Windows does both.
bool runsUnderWine();

/// Removes a directory and everything in it, as far as possible.
void removeTree(const std::filesystem::path& directory) noexcept;

}  // namespace VelmoraQuavin::testing
