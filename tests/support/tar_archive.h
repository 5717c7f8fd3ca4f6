#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace VelmoraQuavin::testing {

/// The fields of a tar header that tests set. A text shorter than its field is padded with zero
/// bytes; a longer one is an error.
struct TarFields {
    std::string name;
    char type = '0';
    std::string mode = "0000644";
    /// Otherwise the octal digits of the content's size.
    std::optional<std::string> size;
    std::string linkName;
    std::string magic = std::string("ustar\0", 6);
    std::string prefix;
    /// Bytes written over the header at an offset, before its checksum is computed.
    std::vector<std::pair<std::size_t, std::string>> patches;
    /// Otherwise six octal digits, a zero byte and a space.
    std::optional<std::string> checksum;
};

/// The magic of GNU tar's own layout, which has no prefix.
const std::string kGnuMagic("ustar  \0", 8);

/// The fields of a plain ustar entry.
TarFields tarFields(const std::string& name, char type = '0');

/// The sum of a header's 512 bytes, its checksum counted as spaces.
unsigned int tarChecksum(std::string_view header);
/// Six octal digits.
std::string octalChecksum(unsigned int sum);

/// A header of 512 bytes.
std::string tarHeader(const TarFields& fields, std::uint64_t contentSize = 0);
/// `content`, padded with zero bytes to a whole number of blocks.
std::string tarPadded(std::string_view content);
/// A header and its padded content.
std::string tarEntry(const TarFields& fields, std::string_view content = {});
/// Two zero blocks.
std::string tarEnd();

/// A plain ustar file.
std::string tarFile(const std::string& name, std::string_view content = {});
/// A plain ustar directory; the name is used unchanged.
std::string tarDirectory(const std::string& name);
/// A name for the next entry, as GNU tar writes it.
std::string gnuLongName(const std::string& name);
/// "LENGTH KEY=VALUE" and a line feed.
std::string paxRecord(const std::string& key, const std::string& value);
/// A header with pax records for the next entry ('x') or for all following entries ('g').
std::string paxHeader(std::string_view records, char type = 'x');

}  // namespace VelmoraQuavin::testing
