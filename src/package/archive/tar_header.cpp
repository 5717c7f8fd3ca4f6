#include "package/archive/tar_header.h"

#include "text/unicode.h"

namespace VelmoraQuavin::internal {
std::string_view TarHeader::field(TarField field) const {
    return {reinterpret_cast<const char*>(block_) + field.offset, field.size};
}

char TarHeader::type() const {
    return static_cast<char>(block_[TarFields::kType.offset]);
}

std::string_view TarHeader::name() const {
    return untilZeroByte(field(TarFields::kName));
}

std::string_view TarHeader::prefix() const {
    if (field(TarFields::kMagic) != kTarMagic) {
        return {};
    }
    return untilZeroByte(field(TarFields::kPrefix));
}

std::string_view TarHeader::sizeField() const {
    return field(TarFields::kSize);
}

std::string_view TarHeader::checksumField() const {
    return field(TarFields::kChecksum);
}

unsigned int TarHeader::checksum() const {
    unsigned int sum = 0;
    for (std::size_t i = 0; i < kTarBlockSize; ++i) {
        sum += block_[i];
    }
    // The checksum field itself counts as spaces.
    for (const char byte : checksumField()) {
        sum += static_cast<unsigned int>(' ') - static_cast<unsigned char>(byte);
    }
    return sum;
}

bool TarHeader::checksumMatches() const {
    // Compared from the last digit backwards.
    unsigned int rest = checksum();
    for (std::size_t i = kTarChecksumDigits; i > 0; --i, rest /= 8) {
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
