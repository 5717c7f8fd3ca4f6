#pragma once

#include <memory>
#include <string>
#include <vector>

#include "package/signature/public_key.h"
#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// The keys whose signatures count. Never changes, so any thread may use it as long as it holds it.
struct TrustedKeys {
    std::vector<TrustedKey> keys;  ///< In the host's order.
    std::string problem;  ///< Which of the host's keys cannot be used, and why; else empty.
};
using SharedTrustedKeys = std::shared_ptr<const TrustedKeys>;

/// Reads keys in PEM, once for all packages that they will verify.
/// @return null for none.
/// @throws std::bad_alloc if memory runs out.
SharedTrustedKeys readTrustedKeys(const std::vector<String>& pems);
/// Sets the keys whose signatures count; without any, nothing is verified. They stay until they are
/// replaced. Loads that run meanwhile finish with the keys that they began with.
void setTrustedKeys(SharedTrustedKeys keys) noexcept;

/// The keys set last; null if there are none. May be called from any thread.
SharedTrustedKeys trustedKeys() noexcept;
/// Whether there are any. May be called from any thread.
bool areKeysTrusted() noexcept;
/// @throws InvalidArgumentsException, saying which, if a key cannot be used.
void requireUsable(const TrustedKeys& keys);

}  // namespace VelmoraQuavin::internal
