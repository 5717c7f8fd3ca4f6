#include "platform/clock.h"

#include <windows.h>

namespace VelmoraQuavin::internal::platform {

std::int64_t monotonicTicks() {
    constexpr std::int64_t kTicksPerSecond = 10'000'000;
    LARGE_INTEGER frequency{};
    LARGE_INTEGER counter{};
    ::QueryPerformanceFrequency(&frequency);
    ::QueryPerformanceCounter(&counter);
    // In two steps, to avoid overflow on a machine that has been up for years.
    const std::int64_t seconds = counter.QuadPart / frequency.QuadPart;
    const std::int64_t rest = counter.QuadPart % frequency.QuadPart;
    return seconds * kTicksPerSecond + rest * kTicksPerSecond / frequency.QuadPart;
}

}  // namespace VelmoraQuavin::internal::platform
