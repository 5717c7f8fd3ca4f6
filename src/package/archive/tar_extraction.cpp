#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include "core/secure_wipe.h"
#include "package/archive/tar_entry_path.h"
#include "package/archive/tar_reader.h"
#include "package/secured/format.h"
#include "platform/confined_directory.h"
#include "quavin/encryption.h"
#include "quavin/files.h"
#include "quavin/status.h"

namespace VelmoraQuavin {
namespace {

using internal::TarEntry;
using internal::TarEntryPath;
using internal::TarReader;
using internal::platform::ConfinedDirectory;

TarEntryPath pathOf(const TarEntry& entry) {
    TarEntryPath path = internal::parseTarEntryPath(entry.name);
    if (path.refusal.empty() && path.isDirectory && entry.kind == TarEntry::Kind::kFile) {
        path.refusal = "its name is that of a directory";
    }
    if (!path.refusal.empty()) {
        throw InvalidArgumentsException("Archive entry " + internal::quotedTarName(entry.name) +
                                        ": " + path.refusal);
    }
    return path;
}

// Runs before anything is written, so that a refused archive leaves no traces.
void checkAll(const unsigned char* data, uint64 length) {
    TarReader reader(data, length);
    for (TarEntry entry; reader.next(entry);) {
        pathOf(entry);
    }
}

void write(ConfinedDirectory& directory, const TarEntry& entry) {
    const std::vector<std::string> names = pathOf(entry).names;
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

void extractSecured(const unsigned char* data, uint64 length, const unsigned char* key,
                    Filepath& destination) {
    if (data == nullptr || key == nullptr) {
        throw InvalidArgumentsException("The archive and its key must not be null");
    }
    if (!internal::isSecuredSize(length)) {
        throw InvalidArgumentsException(
            "A secured archive has a multiple of 16 bytes, at least 16 and less than 4 GiB, not " +
            std::to_string(length));
    }
    const uint64 size = length - internal::kSecuredVectorSize;
    const std::unique_ptr<unsigned char[]> plain(new unsigned char[size]);
    const internal::WipeOnExit wipe(plain.get(), size);
    unsigned char* output = plain.get();
    const QuavinStatus status =
        QuavinEncryption().AES_decrypt(data, static_cast<unsigned int>(length), output, key);
    if (!status.ok()) {
        throw FileException("Could not decrypt the archive");
    }
    if (internal::isFalseTarEnd(plain.get(), size)) {
        throw Exception("The archive makes no sense: it was encrypted with another key",
                        TAR_CHECKSUM_MISMATCH);
    }
    extract(plain.get(), size, destination);
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
        extractSecured(data, length, key, destination);
        return {SUCCESS, ""};
    } catch (...) {
        return getStatusFromCurrentException();
    }
}

}  // namespace VelmoraQuavin
