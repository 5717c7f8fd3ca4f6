#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/quavin/io/wiped_bytes.h"

namespace quavin_tool {

/// Builds a tar archive that every form of extraction takes: plain ustar headers, each directory
/// before what is in it, and names short enough for the header's own field. The same content gives
/// the same bytes.
class TarWriter {
public:
    /// @param name ended by "/".
    void addDirectory(const std::string& name);
    /// @param name with the directories that it is in.
    /// @param content stays where it is until finish().
    void addFile(const std::string& name, std::string_view content);
    /// The archive with its end.
    WipedBytes finish() const;

private:
    struct Entry {
        std::string header;
        std::string_view content;
    };

    std::vector<Entry> entries_;
};

}  // namespace quavin_tool
