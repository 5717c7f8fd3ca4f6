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
    std::string_view field(std::size_t offset, std::size_t size) const;

    const unsigned char* block_;
};

/// The blocks that a content of `size` bytes takes.
constexpr uint64 tarBlocksOf(uint64 size) {
    return size / kTarBlockSize + (size % kTarBlockSize == 0 ? 0 : 1);
}

/// The name of an entry whose header has a prefix, or none.
std::string joinTarName(std::string_view prefix, std::string_view name);

}  // namespace VelmoraQuavin::internal
