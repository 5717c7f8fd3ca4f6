#include "quavin/version.h"

#define QUAVIN_STRINGIFY_VALUE(value) #value
#define QUAVIN_STRINGIFY(value) QUAVIN_STRINGIFY_VALUE(value)

namespace VelmoraQuavin {

const char* getVersion() noexcept {
    return QUAVIN_STRINGIFY(QUAVIN_VERSION_MAJOR) "." QUAVIN_STRINGIFY(
        QUAVIN_VERSION_MINOR) "." QUAVIN_STRINGIFY(QUAVIN_VERSION_PATCH);
}

}  // namespace VelmoraQuavin
