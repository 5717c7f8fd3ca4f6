#include "tools/quavin/package/tar_writer.h"

#include <algorithm>
#include <cstdint>

#include "package/archive/tar_header.h"
#include "quavin/status.h"
#include "tools/quavin/io/wiped_bytes.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::InvalidArgumentsException;
using VelmoraQuavin::internal::kTarBlockSize;
using VelmoraQuavin::internal::kTarChecksumDigits;
using VelmoraQuavin::internal::kTarMagic;
using VelmoraQuavin::internal::tarBlocksOf;
using VelmoraQuavin::internal::TarField;
using VelmoraQuavin::internal::TarFields;
using VelmoraQuavin::internal::TarHeader;
using VelmoraQuavin::internal::TarType;

// One byte less than the field, leaving room for the terminating zero byte.
constexpr std::size_t kLongestName = VelmoraQuavin::internal::TarFields::kName.size - 1;
// Eleven octal digits.
constexpr std::uint64_t kLargestFile = (std::uint64_t{1} << 33) - 1;

constexpr std::string_view kTarVersion = "00";

void writeText(std::string& header, TarField field, std::string_view text) {
    header.replace(field.offset, text.size(), text);
}

// The fields are zeroed beforehand, which terminates the digits.
void writeOctal(std::string& header, TarField field, std::size_t digits, std::uint64_t value) {
    for (std::size_t i = digits; i > 0; --i) {
        header.at(field.offset + i - 1) = static_cast<char>('0' + (value & 7));
        value >>= 3;
    }
}

void writeNumber(std::string& header, TarField field, std::uint64_t value) {
    writeOctal(header, field, field.size - 1, value);
}

std::string makeHeader(const std::string& name, char type, unsigned int mode, std::uint64_t size) {
    if (name.size() > kLongestName) {
        throw InvalidArgumentsException("The name " + name +
                                        " is too long for an archive: the limit is 99 bytes");
    }
    if (size > kLargestFile) {
        throw InvalidArgumentsException("The file " + name + " is too large for an archive");
    }
    std::string header(kTarBlockSize, '\0');
    writeText(header, TarFields::kName, name);
    writeNumber(header, TarFields::kMode, mode);
    writeNumber(header, TarFields::kOwner, 0);
    writeNumber(header, TarFields::kGroup, 0);
    writeNumber(header, TarFields::kSize, size);
    writeNumber(header, TarFields::kTime, 0);
    header[TarFields::kType.offset] = type;
    writeText(header, TarFields::kMagic, kTarMagic);
    writeText(header, TarFields::kVersion, kTarVersion);
    const unsigned int checksum =
        TarHeader(reinterpret_cast<const unsigned char*>(header.data())).checksum();
    writeOctal(header, TarFields::kChecksum, kTarChecksumDigits, checksum);
    // By convention a zero byte and a space follow it.
    header[TarFields::kChecksum.offset + TarFields::kChecksum.size - 1] = ' ';
    return header;
}

}  // namespace

void TarWriter::addDirectory(const std::string& name) {
    entries_.push_back({makeHeader(name, TarType::kDirectory, 0755, 0), {}});
}

void TarWriter::addFile(const std::string& name, std::string_view content) {
    entries_.push_back({makeHeader(name, TarType::kFile, 0644, content.size()), content});
}

WipedBytes TarWriter::finish() const {
    std::uint64_t blocks = 2;  // end of the archive
    for (const Entry& entry : entries_) {
        blocks += 1 + tarBlocksOf(entry.content.size());
    }
    WipedBytes archive(blocks * kTarBlockSize);
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
