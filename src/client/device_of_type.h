#pragma once

#include "quavin/device.h"

namespace VelmoraQuavin::internal {

/// What stands for an engine type where a device is expected.
inline Device deviceOfType(QuavinModelType type) {
    Device device;
    device.engineType = type;
    return device;
}

}  // namespace VelmoraQuavin::internal
