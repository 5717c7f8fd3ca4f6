// For systems without the cryptography for secret_seal.cpp.

#include "engine/cache/cache_seal.h"

namespace VelmoraQuavin::internal {

bool canSealSecrets() noexcept {
    return false;
}

std::unique_ptr<CacheSeal> makeSecretSeal(const std::vector<const Encryption*>& /*keys*/) {
    return nullptr;
}

}  // namespace VelmoraQuavin::internal
