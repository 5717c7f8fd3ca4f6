#include "support/tar_archive.h"

#include <stdexcept>

namespace VelmoraQuavin::testing {
namespace {

constexpr std::size_t kTarBlock = 512;
constexpr std::size_t kChecksumOffset = 148;
constexpr std::size_t kChecksumSize = 8;

std::string octal(std::uint64_t value, std::size_t digits) {
    std::string text(digits, '0');
    for (std::size_t place = digits; place > 0; --place) {
        text[place - 1] = static_cast<char>('0' + value % 8);
        value /= 8;
    }
    if (value != 0) {
        throw std::invalid_argument("too large a number for a tar header");
    }
    return text;
}

void put(std::string& header, std::size_t offset, std::size_t size, const std::string& text) {
    if (text.size() > size) {
        throw std::invalid_argument("too long a text for a tar header: " + text);
    }
    header.replace(offset, text.size(), text);
}

}  // namespace

TarFields tarFields(const std::string& name, char type) {
    TarFields fields;
    fields.name = name;
    fields.type = type;
    return fields;
}

unsigned int tarChecksum(std::string_view header) {
    unsigned int sum = 0;
    for (std::size_t place = 0; place < kTarBlock; ++place) {
        const bool counts = place < kChecksumOffset || place >= kChecksumOffset + kChecksumSize;
        sum += counts ? static_cast<unsigned char>(header.at(place)) : 32u;
    }
    return sum;
}

std::string octalChecksum(unsigned int sum) {
    return octal(sum, 6);
}

std::string tarHeader(const TarFields& fields, std::uint64_t contentSize) {
    std::string header(kTarBlock, '\0');
    put(header, 0, 100, fields.name);
    put(header, 100, 8, fields.mode);
    put(header, 108, 8, "0000000");
    put(header, 116, 8, "0000000");
    put(header, 124, 12, fields.size.has_value() ? *fields.size : octal(contentSize, 11));
    put(header, 136, 12, "00000000000");
    put(header, 156, 1, std::string(1, fields.type));
    put(header, 157, 100, fields.linkName);
    put(header, 257, 8, fields.magic);
    put(header, 345, 155, fields.prefix);
    for (const auto& [offset, bytes] : fields.patches) {
        put(header, offset, kTarBlock - offset, bytes);
    }
    const std::string digits = octalChecksum(tarChecksum(header));
    put(header, kChecksumOffset, kChecksumSize,
        fields.checksum.value_or(digits + std::string("\0 ", 2)));
    return header;
}

std::string tarPadded(std::string_view content) {
    std::string padded(content);
    padded.resize((content.size() + kTarBlock - 1) / kTarBlock * kTarBlock);
    return padded;
}

std::string tarEntry(const TarFields& fields, std::string_view content) {
    return tarHeader(fields, content.size()) + tarPadded(content);
}

std::string tarEnd() {
    return std::string(2 * kTarBlock, '\0');
}

std::string tarFile(const std::string& name, std::string_view content) {
    return tarEntry(tarFields(name), content);
}

std::string tarDirectory(const std::string& name) {
    return tarEntry(tarFields(name, '5'));
}

std::string gnuLongName(const std::string& name) {
    TarFields fields = tarFields("././@LongLink", 'L');
    fields.magic = kGnuMagic;
    return tarEntry(fields, name + '\0');
}

std::string paxRecord(const std::string& key, const std::string& value) {
    const std::string record = " " + key + "=" + value + "\n";
    // The length includes its own digits.
    std::size_t length = record.size() + 1;
    while (std::to_string(length).size() + record.size() != length) {
        ++length;
    }
    return std::to_string(length) + record;
}

std::string paxHeader(std::string_view records, char type) {
    return tarEntry(tarFields("PaxHeaders/entry", type), records);
}

}  // namespace VelmoraQuavin::testing
