#include "package/archive/tar_reader.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "text/unicode.h"

namespace VelmoraQuavin::internal {
namespace {

// Long names and pax records in real archives take a few hundred bytes. The limit keeps a hostile
// archive from having megabytes read as a name.
constexpr uint64 kLargestExtension = uint64{1} << 20;
// Enough to identify an entry while messages stay readable.
constexpr std::size_t kLongestShownName = 200;

constexpr uint64 kLargestSize = std::numeric_limits<uint64>::max();

bool isOctalDigit(char character) {
    return character >= '0' && character <= '7';
}

// Octal digits after optional white space, ended by a zero byte or a space. Old archives leave the
// field of a directory empty.
std::optional<uint64> parseOctal(std::string_view field) {
    constexpr std::string_view kEmpty(" \0", 2);
    if (field.find_first_not_of(kEmpty) == std::string_view::npos) {
        return 0;
    }
    const std::size_t begin = field.find_first_not_of(" \t\n\v\f\r");
    if (begin == std::string_view::npos || !isOctalDigit(field[begin])) {
        return std::nullopt;
    }
    uint64 value = 0;
    std::size_t i = begin;
    for (; i < field.size() && isOctalDigit(field[i]); ++i) {
        value = value * 8 + static_cast<uint64>(field[i] - '0');  // at most twelve digits
    }
    if (i < field.size() && field[i] != '\0' && field[i] != ' ') {
        return std::nullopt;
    }
    return value;
}

// GNU tar's format for sizes of 8 GiB and more: the top bit set, followed by a big-endian number.
std::optional<uint64> parseBinary(std::string_view field) {
    uint64 value = static_cast<unsigned char>(field[0]) & 0x7FU;
    for (const char byte : field.substr(1)) {
        if (value > kLargestSize >> 8) {
            return std::nullopt;
        }
        value = value << 8 | static_cast<unsigned char>(byte);
    }
    return value;
}

std::optional<uint64> parseSize(std::string_view field) {
    const bool binary = (static_cast<unsigned char>(field[0]) & 0x80U) != 0;
    return binary ? parseBinary(field) : parseOctal(field);
}

// The only mark of a directory in old archives.
bool endsInSeparator(const std::string& name) {
    return !name.empty() && (name.back() == '/' || name.back() == '\\');
}

}  // namespace

TarEntryPath requireTarEntryPath(const TarEntry& entry) {
    TarEntryPath path = parseTarEntryPath(entry.name);
    if (path.refusal.empty() && path.isDirectory && entry.kind == TarEntry::Kind::kFile) {
        path.refusal = "its name is that of a directory";
    }
    if (!path.refusal.empty()) {
        throw InvalidArgumentsException("Archive entry " + quotedTarName(entry.name) + ": " +
                                        path.refusal);
    }
    return path;
}

bool isFalseTarEnd(const unsigned char* data, uint64 length) {
    const unsigned char* const end = data + std::min<uint64>(length, kTarBlockSize);
    return length != 0 && *data == 0 &&
           std::any_of(data, end, [](unsigned char byte) { return byte != 0; });
}

bool tarChecksumMatches(const TarHeader& header) {
    return header.checksumMatches() || parseOctal(header.checksumField()) == header.checksum();
}

std::string quotedTarName(std::string_view name) {
    const bool cut = name.size() > kLongestShownName;
    return '"' + printableText(name.substr(0, kLongestShownName)) + (cut ? "...\"" : "\"");
}

void TarReader::fail(STATUS_CODE code, const std::string& name, const std::string& what) const {
    std::string text = "Archive entry " + std::to_string(count_);
    if (!name.empty()) {
        text += " (" + quotedTarName(name) + ")";
    }
    throw Exception(text + ": " + what, code);
}

bool TarReader::next(TarEntry& entry) {
    ++count_;
    Extensions extensions;
    while (const std::optional<TarHeader> header = readHeader()) {
        switch (header->type()) {
            case TarType::kPaxRecords:
            case TarType::kGnuLongName:
            case TarType::kGnuLongLink:
                readExtension(*header, extensions);
                break;
            case TarType::kGlobalPaxRecords:
                readGlobalRecords(takeExtension(*header));
                break;
            default:
                readEntry(*header, extensions, entry);
                return true;
        }
    }
    if (extensions.any) {
        fail(INVALID_ARGUMENTS, "",
             "the archive ends after an extension header, before the entry it describes");
    }
    return false;
}

std::optional<TarHeader> TarReader::readHeader() {
    if (position_ >= length_) {
        fail(INVALID_ARGUMENTS, "", "the archive is cut off: there is no end mark");
    }
    const TarHeader header(data_ + position_);
    if (header.isEnd()) {
        return std::nullopt;
    }
    if (length_ - position_ < kTarBlockSize) {
        fail(INVALID_ARGUMENTS, "", "the archive is cut off in the header");
    }
    if (!tarChecksumMatches(header)) {
        fail(TAR_CHECKSUM_MISMATCH, "", "the header's checksum is wrong");
    }
    position_ += kTarBlockSize;
    return header;
}

std::string_view TarReader::takeContent(uint64 size, const std::string& name) {
    const uint64 left = length_ - position_;
    // The padding of the last block must be present too.
    if (size > left || tarBlocksOf(size) * kTarBlockSize > left) {
        fail(INVALID_ARGUMENTS, name,
             "it needs " + std::to_string(size) +
                 " bytes of content, in whole blocks of 512, and " + std::to_string(left) +
                 " are left in the archive");
    }
    const auto* const content = reinterpret_cast<const char*>(data_ + position_);
    position_ += tarBlocksOf(size) * kTarBlockSize;
    return {content, size};
}

std::string_view TarReader::takeExtension(const TarHeader& header) {
    const std::optional<uint64> size = parseSize(header.sizeField());
    if (!size.has_value() || *size > kLargestExtension || *size > length_ - position_ ||
        tarBlocksOf(*size) * kTarBlockSize > length_ - position_) {
        fail(INVALID_ARGUMENTS, "",
             "a header that extends it is cut off, longer than 1 MiB, or of a size that is not "
             "a number");
    }
    return takeContent(*size, "");
}

void TarReader::readExtension(const TarHeader& header, Extensions& extensions) {
    extensions.any = true;
    const std::string_view content = takeExtension(header);
    switch (header.type()) {
        case TarType::kPaxRecords: {
            std::optional<PaxRecords> records = parsePaxRecords(content);
            if (!records.has_value()) {
                fail(INVALID_ARGUMENTS, "", "its pax records are malformed");
            }
            extensions.pax = std::move(*records);
            break;
        }
        case TarType::kGnuLongName:
            extensions.longName = untilZeroByte(content);
            break;
        default:
            break;  // the target of a link, which is refused when its own header is read
    }
}

void TarReader::readGlobalRecords(std::string_view records) const {
    const std::optional<PaxRecords> parsed = parsePaxRecords(records);
    if (!parsed.has_value()) {
        fail(INVALID_ARGUMENTS, "", "its pax records are malformed");
    }
    if (parsed->path.has_value() || parsed->size.has_value() || parsed->sparse) {
        fail(TAR_UNSUPPORTED_ENTRY, "", "one name or size for all entries is not supported");
    }
}

void TarReader::readEntry(const TarHeader& header, const Extensions& extensions, TarEntry& entry) {
    std::string name = joinTarName(header.prefix(), header.name());
    if (extensions.pax.path.has_value()) {
        name = *extensions.pax.path;
    } else if (extensions.longName.has_value()) {
        name = *extensions.longName;
    }
    const char type = header.type();
    if (type != TarType::kFile && type != TarType::kOldFile && type != TarType::kDirectory) {
        fail(TAR_UNSUPPORTED_ENTRY, name,
             "it is neither a file nor a directory (type " + quotedTarName({&type, 1}) + ")");
    }
    if (extensions.pax.sparse) {
        fail(TAR_UNSUPPORTED_ENTRY, name, "it is a sparse file");
    }
    const std::optional<uint64> size =
        extensions.pax.size.has_value() ? extensions.pax.size : parseSize(header.sizeField());
    if (!size.has_value()) {
        fail(INVALID_ARGUMENTS, name, "its size is not a number");
    }
    const std::string_view content = takeContent(*size, name);

    const bool isDirectory = type == TarType::kDirectory || endsInSeparator(name);
    if (isDirectory && type != TarType::kDirectory && *size != 0) {
        fail(INVALID_ARGUMENTS, name, "it is named like a directory but has content");
    }
    entry.kind = isDirectory ? TarEntry::Kind::kDirectory : TarEntry::Kind::kFile;
    entry.name = std::move(name);
    entry.content = reinterpret_cast<const unsigned char*>(content.data());
    entry.size = *size;
}

}  // namespace VelmoraQuavin::internal
