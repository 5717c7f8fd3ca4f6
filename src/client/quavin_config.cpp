#include "quavin/client.h"

namespace VelmoraQuavin {

QuavinConfig::QuavinConfig() = default;

QuavinStatus QuavinConfig::load() {
    return {};
}

}  // namespace VelmoraQuavin
