#include "package/signature/hex_digest.h"

namespace VelmoraQuavin::internal {

std::optional<platform::Sha256Digest> readHexDigest(std::string_view text) {
    platform::Sha256Digest digest{};
    if (text.size() != 2 * digest.size()) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < digest.size(); ++i) {
        const std::size_t high = kHexDigits.find(text[2 * i]);
        const std::size_t low = kHexDigits.find(text[2 * i + 1]);
        if (high == std::string_view::npos || low == std::string_view::npos) {
            return std::nullopt;
        }
        digest[i] = static_cast<unsigned char>(16 * high + low);
    }
    return digest;
}

}  // namespace VelmoraQuavin::internal
