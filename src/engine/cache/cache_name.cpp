#include "engine/cache/cache_name.h"

#include <cstdint>
#include <tuple>

#include "engine/cache/little_endian.h"
#include "text/hex.h"

namespace VelmoraQuavin::internal {
namespace {

constexpr std::string_view kExtension = ".quavin-network";
constexpr std::size_t kDigitCount = 2 * std::tuple_size_v<ContentHash::Digest>;

}  // namespace

std::string EntryName::fileName() const {
    return hexText(digest_).append(kExtension);
}

bool EntryName::isFileName(std::string_view name) {
    return name.size() == kDigitCount + kExtension.size() &&
           name.substr(kDigitCount) == kExtension &&
           name.find_first_not_of(kHexDigits) == kDigitCount;
}

void CacheName::add(const void* bytes, std::size_t count) noexcept {
    // The length in front keeps "ab" and "c" apart from "a" and "bc".
    const auto length = littleEndian(std::uint64_t{count});
    hash_.add(length.data(), length.size());
    hash_.add(bytes, count);
}

}  // namespace VelmoraQuavin::internal
