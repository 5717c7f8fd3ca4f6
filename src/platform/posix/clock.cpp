#include "platform/clock.h"

#include <chrono>
#include <ratio>

namespace VelmoraQuavin::internal::platform {

std::int64_t monotonicTicks() {
    using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
    return std::chrono::duration_cast<Ticks>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

}  // namespace VelmoraQuavin::internal::platform
