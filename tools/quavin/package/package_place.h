#pragma once

#include <optional>
#include <string>

#include "quavin/status.h"
#include "tools/quavin/io/temporary_directory.h"
#include "tools/quavin/package/key.h"

namespace quavin_tool {

/// A file that is no archive, for want of a key or with the one that was given.
class ArchiveKeyException : public VelmoraQuavin::Exception {
public:
    explicit ArchiveKeyException(const std::string& text)
        : Exception(text, VelmoraQuavin::TAR_CHECKSUM_MISMATCH) {}
};

/// Where a package's files are: the directory that was named or, for an archive, a temporary one
/// that goes with this object.
///
/// Of an encrypted archive, network and weights are in the temporary directory as secured files
/// with the same key, so that they are plain in memory alone. The manifest is plain there.
class PackagePlace {
public:
    /// @param package a directory or an archive. What is neither file nor archive stays as it is,
    ///        for whoever reads the manifest to complain about.
    /// @param key for an encrypted archive, or null.
    /// @throws ArchiveKeyException where the key is missing or wrong; Exception of several classes
    ///         for an archive that unpacking refuses, or that holds no manifest.
    PackagePlace(const std::string& package, const Key* key);

    const std::string& directory() const { return directory_; }

private:
    std::optional<TemporaryDirectory> temporary_;
    std::string directory_;
};

}  // namespace quavin_tool
