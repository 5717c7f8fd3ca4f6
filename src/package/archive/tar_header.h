#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// Headers and contents of a tar archive begin at multiples of this.
constexpr std::size_t kTarBlockSize = 512;

/// What a header says that its entry is.
struct TarType {
    static constexpr char kOldFile = '\0';
    static constexpr char kFile = '0';
    static constexpr char kDirectory = '5';
    static constexpr char kPaxRecords = 'x';
    static constexpr char kGlobalPaxRecords = 'g';
    static constexpr char kGnuLongName = 'L';
    static constexpr char kGnuLongLink = 'K';
};

/// Where the fields of a header block stand, in the POSIX ustar layout. Numbers are octal digits
/// with a zero byte or a blank behind them.
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

/// What the magic field holds, its zero byte included. The GNU layout has "ustar" and blanks there,
/// and no prefix.
constexpr std::string_view kTarMagic("ustar\0", 6);
/// Six octal digits always hold the checksum.
constexpr std::size_t kTarChecksumDigits = 6;

/// A header block, in the POSIX ustar layout. Shows somebody else's 512 bytes.
class TarHeader {
public:
    explicit TarHeader(const unsigned char* block) : block_(block) {}

    /// Whether it is no header but the archive's end.
    bool isEnd() const { return *block_ == 0; }
    /// TarType, or another character.
    char type() const;
    /// The name's field, up to its first zero byte.
    std::string_view name() const;
    /// The prefix's field, up to its first zero byte; empty in layouts that have none.
    std::string_view prefix() const;
    /// The field of the content's length, whole.
    std::string_view sizeField() const;
    /// The checksum's field, whole.
    std::string_view checksumField() const;
    /// What the checksum should be.
    unsigned int checksum() const;
    /// Whether the field begins with the checksum as six digits.
    bool checksumMatches() const;
    /// What follows the header.
    const unsigned char* content() const { return block_ + kTarBlockSize; }

private:
    std::string_view field(TarField field) const;

    const unsigned char* block_;
};

/// The blocks that a content of `size` bytes takes.
constexpr uint64 tarBlocksOf(uint64 size) {
    return size / kTarBlockSize + (size % kTarBlockSize == 0 ? 0 : 1);
}

/// The name of an entry whose header has a prefix, or none.
std::string joinTarName(std::string_view prefix, std::string_view name);

}  // namespace VelmoraQuavin::internal
