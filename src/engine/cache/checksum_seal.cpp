#include <algorithm>

#include "engine/cache/cache_seal.h"

namespace VelmoraQuavin::internal {
namespace {

// The hash over start and content; the rest of the seal is zeros.
SealValue checksum(const HeaderStart& start, const unsigned char* content, std::size_t size) {
    ContentHash hash;
    hash.add(start.data(), start.size());
    hash.add(content, size);
    const ContentHash::Digest digest = hash.digest();
    SealValue value{};
    std::copy(digest.begin(), digest.end(), value.begin());
    return value;
}

class ChecksumSeal : public CacheSeal {
public:
    SealKind kind() const noexcept override { return SealKind::kChecksum; }

    bool close(const EntryName& /*name*/, const HeaderStart& start, unsigned char* content,
               std::size_t size, SealValue& value) const override {
        value = checksum(start, content, size);
        return true;
    }

    bool open(const EntryName& /*name*/, const HeaderStart& start, unsigned char* content,
              std::size_t size, const SealValue& value) const override {
        return value == checksum(start, content, size);
    }
};

}  // namespace

std::unique_ptr<CacheSeal> makeChecksumSeal() {
    return std::make_unique<ChecksumSeal>();
}

}  // namespace VelmoraQuavin::internal
