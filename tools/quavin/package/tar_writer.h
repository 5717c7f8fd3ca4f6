#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/quavin/io/wiped_bytes.h"

namespace quavin_tool {

/// Builds a tar archive that both overloads of FileUtils::extractTarball accept: plain ustar
/// headers, each directory before its content, and names short enough for the header's name field.
/// The same content always yields the same bytes.
class TarWriter {
public:
    /// @param name ending in "/".
    void addDirectory(const std::string& name);
    /// @param name including its directories.
    /// @param content must stay valid until finish().
    void addFile(const std::string& name, std::string_view content);
    /// The complete archive.
    WipedBytes finish() const;

private:
    struct Entry {
        std::string header;
        std::string_view content;
    };

    std::vector<Entry> entries_;
};

}  // namespace quavin_tool
