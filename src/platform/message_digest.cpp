#include "platform/message_digest.h"

namespace VelmoraQuavin::internal::platform {

bool sha256(const void* bytes, std::size_t count, Sha256Digest& digest) noexcept {
    MessageDigest whole(HashAlgorithm::kSha256);
    whole.add(bytes, count);
    return whole.finish(digest.data());
}

}  // namespace VelmoraQuavin::internal::platform
