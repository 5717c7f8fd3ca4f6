#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "package/signature/statement.h"
#include "quavin/status.h"
#include "tools/quavin/io/wiped_bytes.h"

namespace quavin_tool {

/// The file is not an archive, and there was no key or decrypting it did not yield one.
class ArchiveKeyException : public VelmoraQuavin::Exception {
public:
    explicit ArchiveKeyException(const std::string& text)
        : Exception(text, VelmoraQuavin::TAR_CHECKSUM_MISMATCH) {}
};

/// The archive of a package, read into memory, where it stays encrypted if it is.
class OpenedArchive {
public:
    /// @param path of the archive.
    /// @param key sixteen bytes, which must stay, or null.
    /// @throws ArchiveKeyException if the key is missing or wrong; Exception of several classes for
    ///         an archive that the library refuses or that has no manifest.
    OpenedArchive(const std::string& path, const unsigned char* key);

    bool isEncrypted() const { return isEncrypted_; }
    /// As in the file.
    const WipedBytes& stored() const { return stored_; }
    WipedBytes manifest() const;
    /// The content of the signature's file; nothing if there is none.
    std::optional<WipedBytes> signature() const;
    /// The digests of all files but the signature's, and those that a statement leaves out.
    VelmoraQuavin::internal::SignedFiles digests(
        const VelmoraQuavin::internal::Statement& statement) const;
    /// @param file its path in the package.
    /// @return its size; nothing if there is no such file.
    std::optional<std::uint64_t> sizeOf(const std::string& file) const;
    /// @throws FileException if there is no such file.
    WipedBytes contentOf(const std::string& file) const;

private:
    // The archive's plain form, if it is encrypted.
    WipedBytes decrypted() const;

    std::string path_;
    const unsigned char* key_;
    WipedBytes stored_;
    bool isEncrypted_;
    WipedBytes manifest_;
    std::optional<WipedBytes> signature_;
    std::map<std::string, std::uint64_t> sizes_;  // by path in the package
};

}  // namespace quavin_tool
