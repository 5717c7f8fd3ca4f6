#pragma once

#include <map>
#include <string>

#include "package/archive/tar_reader.h"
#include "tools/quavin/io/wiped_bytes.h"

namespace quavin_tool {

/// Whether a file begins as a tar archive does. Nothing tells an encrypted one from other bytes.
bool isArchive(const WipedBytes& bytes);

/// The files of an archive; their contents lie in its bytes.
struct ArchiveContent {
    std::map<std::string, VelmoraQuavin::internal::TarEntry> files;  ///< By name, parted by "/".
    std::string package;  ///< What stands before "manifest.json": nothing, or a directory and "/".
};

/// Finds a package in an archive: in the directory that unpacking calls its root, or else in any at
/// most one deep.
/// @param path of the archive, for messages.
/// @throws Exception where unpacking refuses the archive; ModelMetaDataException where it holds no
///         manifest.
ArchiveContent readArchive(const WipedBytes& archive, const std::string& path);

}  // namespace quavin_tool
