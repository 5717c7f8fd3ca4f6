#include "engine/cache/entry_header.h"

#include <algorithm>
#include <string_view>

#include "engine/cache/little_endian.h"

namespace VelmoraQuavin::internal {
namespace {

constexpr std::string_view kMagic = "QUAVINCN";
constexpr std::uint16_t kFormat = 1;

}  // namespace

HeaderStart headerStart(SealKind kind, const EntryName& name, std::uint64_t contentSize) noexcept {
    HeaderStart start{};
    auto next = start.begin();
    const auto put = [&next](const auto& bytes) {
        next = std::copy(bytes.begin(), bytes.end(), next);
    };
    put(kMagic);
    put(littleEndian(kFormat));
    put(littleEndian(static_cast<std::uint16_t>(kind)));
    put(littleEndian(contentSize));
    put(name.digest());
    return start;
}

}  // namespace VelmoraQuavin::internal
