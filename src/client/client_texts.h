#pragma once

#include "quavin/status.h"

namespace VelmoraQuavin::internal {

constexpr const char* kNotInitialized =
    "Trying to use quavin client before the sdk was initialized!";

inline QuavinStatus notInitialized() {
    return {NOT_INITIALIZED, kNotInitialized};
}

}  // namespace VelmoraQuavin::internal
