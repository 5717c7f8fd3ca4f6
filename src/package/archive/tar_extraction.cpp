#include <cstddef>
#include <optional>
#include <string>

#include "package/archive/decrypted_archive.h"
#include "package/archive/tar_reader.h"
#include "platform/confined_directory.h"
#include "quavin/files.h"
#include "quavin/status.h"

namespace VelmoraQuavin {
namespace {

using internal::TarEntry;
using internal::TarReader;
using internal::platform::ConfinedDirectory;

// Runs before anything is written, so that a refused archive leaves no traces.
void checkAll(const unsigned char* data, uint64 length) {
    TarReader reader(data, length);
    for (TarEntry entry; reader.next(entry);) {
        internal::requireTarEntryPath(entry);
    }
}

void write(ConfinedDirectory& directory, const TarEntry& entry) {
    const std::vector<std::string> names = internal::requireTarEntryPath(entry).names;
    const std::string problem = entry.kind == TarEntry::Kind::kFile
                                    ? directory.writeFile(names, entry.content, entry.size)
                                    : directory.createDirectories(names);
    if (!problem.empty()) {
        throw FileException("Archive entry " + internal::quotedTarName(entry.name) + ": " +
                            problem);
    }
}

// Returns the full path of the first directory; empty if there is none.
Filepath writeAll(const unsigned char* data, uint64 length, const Filepath& destination) {
    std::optional<ConfinedDirectory> directory = ConfinedDirectory::open(destination.c_str());
    if (!directory.has_value()) {
        throw FileException(String("Not a directory : ") + destination.c_str());
    }
    std::optional<Filepath> root;
    TarReader reader(data, length);
    for (TarEntry entry; reader.next(entry);) {
        write(*directory, entry);
        if (entry.kind == TarEntry::Kind::kDirectory && !root.has_value()) {
            root = Filepath(destination).append(Filepath(entry.name));
        }
    }
    return root.value_or(Filepath());
}

void extract(const unsigned char* data, uint64 length, Filepath& destination) {
    if (data == nullptr) {
        throw InvalidArgumentsException("The archive must not be null");
    }
    // Joined to an entry's name, an empty destination would be the root of the file system.
    if (*destination.c_str() == 0) {
        throw InvalidArgumentsException("The destination must not be empty");
    }
    checkAll(data, length);
    destination = writeAll(data, length, destination);
}

}  // namespace

QuavinStatus FileUtils::extractTarball(const unsigned char* data, uint64 length,
                                       Filepath& destination) {
    try {
        extract(data, length, destination);
        return {SUCCESS, ""};
    } catch (...) {
        return getStatusFromCurrentException();
    }
}

QuavinStatus FileUtils::extractSecuredTarball(const unsigned char* data, uint64 length,
                                              const unsigned char* key, Filepath& destination) {
    try {
        const internal::DecryptedArchive archive(data, length, key);
        extract(archive.data(), archive.size(), destination);
        return {SUCCESS, ""};
    } catch (...) {
        return getStatusFromCurrentException();
    }
}

}  // namespace VelmoraQuavin
