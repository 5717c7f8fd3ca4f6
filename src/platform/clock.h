#pragma once

#include <cstdint>

namespace VelmoraQuavin::internal::platform {

/// A monotonic clock in ticks of 100 nanoseconds. Its epoch is arbitrary.
std::int64_t monotonicTicks();

}  // namespace VelmoraQuavin::internal::platform
