#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "tools/quavin/package/package.h"

namespace quavin_tool {

/// A manifest, and how large the files are that it names; by their paths in the package.
struct Inspected {
    Metadata metadata;
    std::map<std::string, std::uint64_t> sizes;
};

/// Looks at a package's directory. Files are measured, not read.
Inspected inspectDirectory(const std::string& package);

/// Looks at an archive without unpacking it.
/// @throws Exception TAR_CHECKSUM_MISMATCH for what is no archive, or an encrypted one.
Inspected inspectArchive(const std::string& path);

}  // namespace quavin_tool
