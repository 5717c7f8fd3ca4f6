#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quavin_tool {

/// Builds a tar archive that every form of extraction takes: plain ustar headers, each directory
/// before what is in it, and names short enough for the header's own field. The same content gives
/// the same bytes.
class TarText {
public:
    /// @param name ended by "/".
    void addDirectory(const std::string& name);
    void addFile(const std::string& name, std::string_view content);
    /// The archive with its end.
    std::string finish() &&;

private:
    void addHeader(const std::string& name, char type, unsigned int mode, std::uint64_t size);

    std::string bytes_;
};

}  // namespace quavin_tool
