#include "tar_text.h"

#include <algorithm>
#include <cstdint>

#include "package/tar_header.h"
#include "quavin/status.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::InvalidArgumentsException;
using VelmoraQuavin::internal::kTarBlockSize;
using VelmoraQuavin::internal::tarBlocksOf;
using VelmoraQuavin::internal::TarType;

// One byte less than the field, which then ends in a zero byte.
constexpr std::size_t kLongestName = 99;
// Eleven octal digits.
constexpr std::uint64_t kLargestFile = (std::uint64_t{1} << 33) - 1;

struct Field {
    std::size_t offset;
    std::size_t digits;
};
constexpr Field kMode{100, 7};
constexpr Field kOwner{108, 7};
constexpr Field kGroup{116, 7};
constexpr Field kSize{124, 11};
constexpr Field kTime{136, 11};
constexpr Field kChecksum{148, 6};
constexpr std::size_t kType = 156;
constexpr std::size_t kMagic = 257;
constexpr std::string_view kUstar("ustar\00000", 8);

// The fields are zero bytes before, which end the digits.
void writeOctal(std::string& header, Field field, std::uint64_t value) {
    for (std::size_t i = field.digits; i > 0; --i) {
        header.at(field.offset + i - 1) = static_cast<char>('0' + (value & 7));
        value >>= 3;
    }
}

std::string makeHeader(const std::string& name, char type, unsigned int mode, std::uint64_t size) {
    if (name.size() > kLongestName) {
        throw InvalidArgumentsException("The name " + name +
                                        " is too long for an archive: 99 bytes are its limit");
    }
    if (size > kLargestFile) {
        throw InvalidArgumentsException("The file " + name + " is too large for an archive");
    }
    std::string header(kTarBlockSize, '\0');
    header.replace(0, name.size(), name);
    writeOctal(header, kMode, mode);
    writeOctal(header, kOwner, 0);
    writeOctal(header, kGroup, 0);
    writeOctal(header, kSize, size);
    writeOctal(header, kTime, 0);
    header[kType] = type;
    header.replace(kMagic, kUstar.size(), kUstar);

    // The checksum counts itself as blanks.
    header.replace(kChecksum.offset, 8, 8, ' ');
    unsigned int sum = 0;
    for (const char byte : header) {
        sum += static_cast<unsigned char>(byte);
    }
    writeOctal(header, kChecksum, sum);
    header[kChecksum.offset + 6] = '\0';
    return header;
}

}  // namespace

void TarText::addDirectory(const std::string& name) {
    entries_.push_back({makeHeader(name, TarType::kDirectory, 0755, 0), {}});
}

void TarText::addFile(const std::string& name, std::string_view content) {
    entries_.push_back({makeHeader(name, TarType::kFile, 0644, content.size()), content});
}

Bytes TarText::finish() const {
    std::uint64_t blocks = 2;  // the end
    for (const Entry& entry : entries_) {
        blocks += 1 + tarBlocksOf(entry.content.size());
    }
    Bytes archive(blocks * kTarBlockSize);
    unsigned char* next = archive.data();
    std::fill_n(next, archive.size(), static_cast<unsigned char>(0));
    for (const Entry& entry : entries_) {
        next = std::copy(entry.header.begin(), entry.header.end(), next);
        std::copy(entry.content.begin(), entry.content.end(), next);
        next += tarBlocksOf(entry.content.size()) * kTarBlockSize;
    }
    return archive;
}

}  // namespace quavin_tool
