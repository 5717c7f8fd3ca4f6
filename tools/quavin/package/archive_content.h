#pragma once

#include <map>
#include <string>

#include "package/archive/tar_reader.h"
#include "tools/quavin/io/wiped_bytes.h"

namespace quavin_tool {

/// Whether a file begins like a tar archive. An encrypted archive cannot be recognised.
bool isArchive(const WipedBytes& bytes);

/// The files of an archive; their contents point into its bytes.
struct ArchiveContent {
    /// By name, with "/" between parts.
    std::map<std::string, VelmoraQuavin::internal::TarEntry> files;
    std::string package;  ///< The prefix of "manifest.json": empty, or a directory and "/".
};

/// Finds the package in an archive: in the directory that unpacking reports as the root, or else in
/// any directory at most one level deep.
/// @param path the archive's path, for messages.
/// @throws Exception if unpacking would refuse the archive; ModelMetaDataException if there is no
///         manifest in it.
ArchiveContent readArchive(const WipedBytes& archive, const std::string& path);

}  // namespace quavin_tool
