#include "client/loadable_options.h"

#include "engine/engine.h"
#include "package/signature/trusted_keys.h"
#include "quavin/status.h"

namespace VelmoraQuavin::internal {

void requireLoadable(const EngineOptions& options) {
    requireMeaningful(options);
    const SharedTrustedKeys keys = trustedKeys();
    if (keys == nullptr) {
        return;
    }
    requireUsable(*keys);
    if (options.mapWeights) {
        // They could change after they were compared with the signature.
        throw InvalidArgumentsException(
            "EngineOptions::mapWeights is true, but must be false while keys are trusted");
    }
}

}  // namespace VelmoraQuavin::internal
