// Tar archives without a length. That form trusts its input, so only archives that a careful host
// would hand to it get there: plain ustar throughout, whole, and with names that stay below the
// destination. Everything else counts as read.
#include <charconv>
#include <optional>
#include <vector>

#include "fuzz/guarded_destination.h"
#include "fuzz/promise.h"
#include "package/archive/tar_entry_path.h"
#include "package/archive/tar_header.h"
#include "quavin/files.h"
#include "quavin/status.h"

using quavin_fuzz::GuardedDestination;
using VelmoraQuavin::internal::joinTarName;
using VelmoraQuavin::internal::kTarBlockSize;
using VelmoraQuavin::internal::parseTarEntryPath;
using VelmoraQuavin::internal::tarBlocksOf;
using VelmoraQuavin::internal::TarFields;
using VelmoraQuavin::internal::TarHeader;

namespace {

// Eleven octal digits and a zero byte, as every tar program writes them.
std::optional<std::uint64_t> sizeIn(const TarHeader& header) {
    const std::string_view field = header.sizeField();
    const char* const last = field.data() + field.size() - 1;
    std::uint64_t size = 0;
    const auto [end, error] = std::from_chars(field.data(), last, size, 8);
    const bool isSize = error == std::errc() && end == last && *last == '\0';
    return isSize ? std::optional(size) : std::nullopt;
}

bool isNamedInside(const TarHeader& header) {
    return header.name().size() < TarFields::kName.size &&
           header.prefix().size() < TarFields::kPrefix.size &&
           parseTarEntryPath(joinTarName(header.prefix(), header.name())).refusal.empty();
}

// Whether there are only headers of that kind, with their contents, up to a block that ends them.
bool isWhole(const std::vector<unsigned char>& archive) {
    std::size_t position = 0;
    while (archive.size() - position >= kTarBlockSize) {
        const TarHeader header(archive.data() + position);
        if (header.isEnd()) {
            return true;
        }
        position += kTarBlockSize;
        const std::optional<std::uint64_t> size = sizeIn(header);
        if (!size.has_value() || !isNamedInside(header) || *size > archive.size() - position ||
            tarBlocksOf(*size) * kTarBlockSize > archive.size() - position) {
            return false;
        }
        position += static_cast<std::size_t>(tarBlocksOf(*size)) * kTarBlockSize;
    }
    return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const GuardedDestination guarded(GuardedDestination::Links::kNone);  // it follows them
    std::vector<unsigned char> archive(data, data + size);  // it takes bytes that can be written
    if (!isWhole(archive)) {
        return 0;
    }
    VelmoraQuavin::Filepath destination = guarded.path();
    static_cast<void>(VelmoraQuavin::FileUtils::extractTarball(archive.data(), destination));
    quavin_fuzz::require(std::equal(archive.begin(), archive.end(), data),
                         "the archive is not changed");
    guarded.checkAndEmpty();
    return 0;
}
