#include "tools/quavin/package/opened_archive.h"

#include <algorithm>

#include "package/signature/verify_signature.h"
#include "tools/quavin/io/file.h"
#include "tools/quavin/package/archive_content.h"
#include "tools/quavin/package/package.h"
#include "tools/quavin/package/package_digests.h"
#include "tools/quavin/package/secured_bytes.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::internal::kSignatureName;
using VelmoraQuavin::internal::TarEntry;

WipedBytes copyOf(const unsigned char* bytes, std::size_t count) {
    WipedBytes copy(count);
    std::copy_n(bytes, count, copy.data());
    return copy;
}

WipedBytes copyOf(const TarEntry& entry) {
    return copyOf(entry.content, entry.size);
}

WipedBytes copyOf(const WipedBytes& bytes) {
    return copyOf(bytes.data(), bytes.size());
}

}  // namespace

OpenedArchive::OpenedArchive(const std::string& path, const unsigned char* key)
    : path_(path), key_(key), stored_(readFile(path)), isEncrypted_(!isArchive(stored_)) {
    // An encrypted archive cannot be told from other bytes.
    if (isEncrypted_ && key_ == nullptr) {
        throw ArchiveKeyException(
            path_ +
            " is neither a directory nor a tar archive; an encrypted archive needs "
            "--key-file or --key-env");
    }
    const WipedBytes plain = decrypted();
    if (isEncrypted_ && !isArchive(plain)) {
        throw ArchiveKeyException(
            path_ +
            " is not a tar archive, even after decryption: the key is wrong, or the file is "
            "damaged");
    }
    const auto files = readArchive(isEncrypted_ ? plain : stored_, path_);
    manifest_ = copyOf(files.at(kManifestName));
    const auto signature = files.find(kSignatureName);
    if (signature != files.end()) {
        signature_ = copyOf(signature->second);
    }
    for (const auto& [file, entry] : files) {
        sizes_[file] = entry.size;
    }
}

WipedBytes OpenedArchive::decrypted() const {
    return isEncrypted_ ? decrypt(stored_, key_, path_) : WipedBytes();
}

WipedBytes OpenedArchive::manifest() const {
    return copyOf(manifest_);
}

std::optional<WipedBytes> OpenedArchive::signature() const {
    return signature_.has_value() ? std::optional(copyOf(*signature_)) : std::nullopt;
}

VelmoraQuavin::internal::SignedFiles OpenedArchive::digests(
    const VelmoraQuavin::internal::Statement& statement) const {
    const WipedBytes plain = decrypted();
    return digestsInArchive(readArchive(isEncrypted_ ? plain : stored_, path_), statement);
}

std::optional<std::uint64_t> OpenedArchive::sizeOf(const std::string& file) const {
    const auto size = sizes_.find(file);
    return size == sizes_.end() ? std::nullopt : std::optional(size->second);
}

WipedBytes OpenedArchive::contentOf(const std::string& file) const {
    const WipedBytes plain = decrypted();
    const auto files = readArchive(isEncrypted_ ? plain : stored_, path_);
    const auto entry = files.find(file);
    if (entry == files.end()) {
        throw VelmoraQuavin::FileException(path_ + " contains no " + file);
    }
    return copyOf(entry->second);
}

}  // namespace quavin_tool
