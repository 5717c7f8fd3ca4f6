#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// Headers and contents of a tar archive start at multiples of this.
constexpr std::size_t kTarBlockSize = 512;

/// The values of a header's type field.
struct TarType {
    static constexpr char kOldFile = '\0';
    static constexpr char kFile = '0';
    static constexpr char kDirectory = '5';
    static constexpr char kPaxRecords = 'x';
    static constexpr char kGlobalPaxRecords = 'g';
    static constexpr char kGnuLongName = 'L';
    static constexpr char kGnuLongLink = 'K';
};

/// The position of a field in a header block, in the POSIX ustar layout. Numbers are octal digits
/// followed by a zero byte or a space.
struct TarField {
    std::size_t offset;
    std::size_t size;
};
struct TarFields {
    static constexpr TarField kName{0, 100};
    static constexpr TarField kMode{100, 8};
    static constexpr TarField kOwner{108, 8};
    static constexpr TarField kGroup{116, 8};
    static constexpr TarField kSize{124, 12};
    static constexpr TarField kTime{136, 12};
    static constexpr TarField kChecksum{148, 8};
    static constexpr TarField kType{156, 1};
    static constexpr TarField kMagic{257, 6};
    static constexpr TarField kVersion{263, 2};
    static constexpr TarField kPrefix{345, 155};
};

/// The value of the magic field, including its zero byte. The GNU layout has "ustar" and spaces
/// there, and no prefix.
constexpr std::string_view kTarMagic("ustar\0", 6);
/// Six octal digits are always enough for the checksum.
constexpr std::size_t kTarChecksumDigits = 6;

/// A view of a 512-byte header block in the POSIX ustar layout.
class TarHeader {
public:
    explicit TarHeader(const unsigned char* block) : block_(block) {}

    /// Whether this marks the end of the archive instead of being a header.
    bool isEnd() const { return *block_ == 0; }
    /// One of TarType, or any other character.
    char type() const;
    /// The name field, up to its first zero byte.
    std::string_view name() const;
    /// The prefix field, up to its first zero byte; empty in layouts without one.
    std::string_view prefix() const;
    /// The whole field for the size of the content.
    std::string_view sizeField() const;
    /// The whole checksum field.
    std::string_view checksumField() const;
    /// What the checksum should be.
    unsigned int checksum() const;
    /// Whether the field begins with the right checksum in six digits.
    bool checksumMatches() const;
    /// The content that follows the header.
    const unsigned char* content() const { return block_ + kTarBlockSize; }

private:
    std::string_view field(TarField field) const;

    const unsigned char* block_;
};

/// The number of blocks that `size` bytes of content take up.
constexpr uint64 tarBlocksOf(uint64 size) {
    return size / kTarBlockSize + (size % kTarBlockSize == 0 ? 0 : 1);
}

/// The full name of an entry; `prefix` may be empty.
std::string joinTarName(std::string_view prefix, std::string_view name);

}  // namespace VelmoraQuavin::internal
