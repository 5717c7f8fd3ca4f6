#pragma once

namespace VelmoraQuavin::internal {

constexpr const char* kNotInitialized =
    "Trying to use quavin client before the sdk was initialized!";

}  // namespace VelmoraQuavin::internal
