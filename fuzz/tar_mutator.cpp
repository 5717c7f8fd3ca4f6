// Corrects the checksums of tar headers after libFuzzer has changed an input. Otherwise hardly any
// input would get past the first header.
#include <algorithm>
#include <charconv>
#include <cstdint>

#include "package/archive/tar_header.h"

using VelmoraQuavin::internal::kTarBlockSize;
using VelmoraQuavin::internal::kTarChecksumDigits;
using VelmoraQuavin::internal::tarBlocksOf;
using VelmoraQuavin::internal::TarFields;
using VelmoraQuavin::internal::TarHeader;

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

void correctChecksum(std::uint8_t* block) {
    unsigned int rest = TarHeader(block).checksum();
    std::uint8_t* const field = block + TarFields::kChecksum.offset;
    for (std::size_t i = kTarChecksumDigits; i > 0; --i, rest /= 8) {
        field[i - 1] = static_cast<std::uint8_t>('0' + rest % 8);
    }
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned int seed) {
    size = LLVMFuzzerMutate(data, size, maxSize);
    constexpr unsigned int kLeftWrong = 8;  // one in so many
    std::size_t position = seed % kLeftWrong == 0 ? size : 0;
    while (size - position >= kTarBlockSize && data[position] != 0) {
        correctChecksum(data + position);
        const std::string_view field = TarHeader(data + position).sizeField();
        std::uint64_t content = 0;
        std::from_chars(field.data(), field.data() + field.size(), content, 8);
        position += kTarBlockSize;
        const std::uint64_t blocks =
            std::min<std::uint64_t>(tarBlocksOf(content), size / kTarBlockSize);
        position = std::min<std::size_t>(
            size, position + static_cast<std::size_t>(blocks) * kTarBlockSize);
    }
    return size;
}
