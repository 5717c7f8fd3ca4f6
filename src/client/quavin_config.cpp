#include "quavin/client.h"

namespace VelmoraQuavin {

QuavinStatus QuavinConfig::load() {
    return {};
}

}  // namespace VelmoraQuavin
