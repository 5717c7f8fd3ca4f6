#pragma once

#include <optional>
#include <string>

#include "quavin/status.h"
#include "tools/quavin/io/temporary_directory.h"
#include "tools/quavin/package/key.h"

namespace quavin_tool {

/// The file is not an archive, and there was no key or decrypting it did not yield one.
class ArchiveKeyException : public VelmoraQuavin::Exception {
public:
    explicit ArchiveKeyException(const std::string& text)
        : Exception(text, VelmoraQuavin::TAR_CHECKSUM_MISMATCH) {}
};

/// Where a package's files are: the given directory or, for an archive, a temporary one that is
/// removed with this object.
///
/// For an encrypted archive, the temporary directory holds network and weights as files secured
/// with the same key, so that they are plain only in memory. The manifest is plain there.
class PackagePlace {
public:
    /// @param package a directory or an archive. Anything that is not a regular file is taken for a
    ///        directory; reading its manifest reports any problem.
    /// @param key for an encrypted archive, or null.
    /// @throws ArchiveKeyException if the key is missing or wrong; Exception of several classes for
    ///         an archive that unpacking refuses or that contains no manifest.
    PackagePlace(const std::string& package, const Key* key);

    const std::string& directory() const { return directory_; }

private:
    std::optional<TemporaryDirectory> temporary_;
    std::string directory_;
};

}  // namespace quavin_tool
