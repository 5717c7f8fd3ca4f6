#pragma once

#include "quavin/status.h"

namespace quavin_tool {

/// Throws a status that is not a success.
inline void require(const VelmoraQuavin::QuavinStatus& status) {
    if (!status.ok()) {
        throw VelmoraQuavin::Exception(status.getDescription(), status.getCode());
    }
}

}  // namespace quavin_tool
