#pragma once

#include <map>
#include <string>

#include "package/archive/tar_reader.h"

namespace VelmoraQuavin::internal {

/// The files of a package in an archive, by packagePath(). Their contents point into the archive.
using ArchivedFiles = std::map<std::string, TarEntry>;

/// Finds the package in an untrusted archive: in the directory that extracting reports as the root,
/// or else at the top, or else in the first directory by name at the top that has a manifest. Of
/// files with the same name, the last counts, as when extracting. Files outside the package's
/// directory are left out.
/// @throws Exception as TarReader::next() does; InvalidArgumentsException for an entry that must
///         not be extracted; ModelMetaDataException if there is no manifest.
ArchivedFiles readArchivedPackage(const unsigned char* data, uint64 length);

}  // namespace VelmoraQuavin::internal
