#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace VelmoraQuavin::testing {

/// The fields of a tar header that tests set. A text shorter than its field is filled with zero
/// bytes, one that is longer is an error.
struct TarFields {
    std::string name;
    char type = '0';
    std::string mode = "0000644";
    /// Otherwise the octal digits of the content's size.
    std::optional<std::string> size;
    std::string linkName;
    std::string magic = std::string("ustar\0", 6);
    std::string prefix;
    /// Bytes put over the header, with their offset, before its checksum is computed.
    std::vector<std::pair<std::size_t, std::string>> patches;
    /// Otherwise six octal digits, a zero byte and a blank.
    std::optional<std::string> checksum;
};

/// The magic of GNU tar's own layout, which has no prefix.
const std::string kGnuMagic("ustar  \0", 8);

/// The sum of a header's 512 bytes, its checksum taken as blanks.
unsigned int tarChecksum(std::string_view header);
/// Six octal digits.
std::string octalChecksum(unsigned int sum);

/// A header of 512 bytes.
std::string tarHeader(const TarFields& fields, std::uint64_t contentSize = 0);
/// Zero bytes that make `content` a whole number of blocks.
std::string tarPadded(std::string_view content);
/// A header and its padded content.
std::string tarEntry(const TarFields& fields, std::string_view content = {});
/// Two zero blocks.
std::string tarEnd();

/// A plain ustar file.
std::string tarFile(const std::string& name, std::string_view content = {});
/// A plain ustar directory, named as it is.
std::string tarDirectory(const std::string& name);
/// A name for the entry behind it, in GNU tar's way.
std::string gnuLongName(const std::string& name);
/// "LENGTH KEY=VALUE" and a line feed.
std::string paxRecord(const std::string& key, const std::string& value);
/// A header with pax records for the entry behind it ('x'), or for all ('g').
std::string paxHeader(std::string_view records, char type = 'x');

}  // namespace VelmoraQuavin::testing
