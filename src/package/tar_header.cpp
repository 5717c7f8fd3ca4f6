#include "package/tar_header.h"

#include "core/text_tools.h"

namespace VelmoraQuavin::internal {
namespace {

struct Field {
    std::size_t offset;
    std::size_t size;
};

constexpr Field kName{0, 100};
constexpr Field kSize{124, 12};
constexpr Field kChecksum{148, 8};
constexpr std::size_t kType = 156;
constexpr Field kMagic{257, 6};
constexpr Field kPrefix{345, 155};

// With its zero byte. The GNU layout has "ustar" and blanks there, and no prefix.
constexpr std::string_view kUstar("ustar\0", 6);

constexpr std::size_t kChecksumDigits = 6;

}  // namespace

std::string_view TarHeader::field(std::size_t offset, std::size_t size) const {
    return {reinterpret_cast<const char*>(block_) + offset, size};
}

char TarHeader::type() const {
    return static_cast<char>(block_[kType]);
}

std::string_view TarHeader::name() const {
    return untilZeroByte(field(kName.offset, kName.size));
}

std::string_view TarHeader::prefix() const {
    if (field(kMagic.offset, kMagic.size) != kUstar) {
        return {};
    }
    return untilZeroByte(field(kPrefix.offset, kPrefix.size));
}

std::string_view TarHeader::sizeField() const {
    return field(kSize.offset, kSize.size);
}

std::string_view TarHeader::checksumField() const {
    return field(kChecksum.offset, kChecksum.size);
}

unsigned int TarHeader::checksum() const {
    unsigned int sum = 0;
    for (std::size_t i = 0; i < kTarBlockSize; ++i) {
        sum += block_[i];
    }
    // The checksum itself counts as blanks.
    for (const char byte : checksumField()) {
        sum += static_cast<unsigned int>(' ') - static_cast<unsigned char>(byte);
    }
    return sum;
}

bool TarHeader::checksumMatches() const {
    // Six octal digits always hold it. Compared from the last one on.
    unsigned int rest = checksum();
    for (std::size_t i = kChecksumDigits; i > 0; --i, rest /= 8) {
        if (checksumField()[i - 1] != static_cast<char>('0' + rest % 8)) {
            return false;
        }
    }
    return true;
}

std::string joinTarName(std::string_view prefix, std::string_view name) {
    std::string joined(prefix);
    if (!prefix.empty()) {
        joined += '/';
    }
    return joined.append(name);
}

}  // namespace VelmoraQuavin::internal
