#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "package/archive/archived_package.h"
#include "package/signature/statement.h"
#include "quavin/metadata.h"
#include "tools/quavin/io/wiped_bytes.h"

namespace quavin_tool {

/// @throws Exception if the system's cryptography fails.
VelmoraQuavin::internal::platform::Sha256Digest digestOf(std::string_view content);

/// The digests of the files in a package's directory and below, apart from its signature's.
/// @param statement what it leaves out has no digest.
/// @throws InvalidArgumentsException for what is neither a directory nor a regular file, and for a
///         name that cannot be signed; FileException for a file that cannot be read.
VelmoraQuavin::internal::SignedFiles digestsInDirectory(
    const std::string& package, const VelmoraQuavin::internal::Statement& statement);

/// As above, of the files of a package in an archive.
VelmoraQuavin::internal::SignedFiles digestsInArchive(
    const VelmoraQuavin::internal::ArchivedFiles& files,
    const VelmoraQuavin::internal::Statement& statement);

/// The content of the signature's file in a package's directory; nothing if there is none.
/// @throws SignatureException if it is larger than any signature; FileException if it cannot be
///         read.
std::optional<WipedBytes> signatureInDirectory(const std::string& package);

/// The paths of the network's files that are not among these, in the target for this engine.
std::vector<std::string> componentsMissingIn(const VelmoraQuavin::internal::SignedFiles& files,
                                             const VelmoraQuavin::ModelMetadata& metadata);

}  // namespace quavin_tool
