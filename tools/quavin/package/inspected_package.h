#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "tools/quavin/package/package.h"

namespace quavin_tool {

/// A manifest, the sizes of the files that it names, by path in the package, and what the signature
/// says of itself. Nothing of that is verified.
struct Inspected {
    Metadata metadata;
    std::map<std::string, std::uint64_t> sizes;
    bool isSigned = false;
    std::string keyHint;           ///< What the signature calls its key; may be empty.
    std::string signatureProblem;  ///< Why there is no signature although there is its file.
};

/// Inspects a package's directory. Apart from the manifest, files are measured, not read.
Inspected inspectDirectory(const std::string& package);

/// Inspects an archive without unpacking it.
/// @throws Exception TAR_CHECKSUM_MISMATCH if it is not an archive, or an encrypted one.
Inspected inspectArchive(const std::string& path);

}  // namespace quavin_tool
