#pragma once

#include <string>

#include "package/archive/archived_package.h"
#include "tools/quavin/io/wiped_bytes.h"

namespace quavin_tool {

/// Whether a file begins like a tar archive. An encrypted archive cannot be recognised.
bool isArchive(const WipedBytes& bytes);

/// Finds the package in an archive, as the library does when it loads one.
/// @param path the archive's path, for messages.
/// @throws Exception if the library would refuse the archive; ModelMetaDataException if there is no
///         manifest in it.
VelmoraQuavin::internal::ArchivedFiles readArchive(const WipedBytes& archive,
                                                   const std::string& path);

}  // namespace quavin_tool
