#include "platform/clock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <thread>

namespace VelmoraQuavin::internal::platform {
namespace {

TEST(MonotonicTicks, NeverGoBack) {
    std::int64_t last = monotonicTicks();
    for (int call = 0; call < 10'000; ++call) {
        const std::int64_t now = monotonicTicks();
        ASSERT_GE(now, last);
        last = now;
    }
}

TEST(MonotonicTicks, AreAHundredNanosecondsLong) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point outerStart = Clock::now();
    const std::int64_t start = monotonicTicks();
    const Clock::time_point innerStart = Clock::now();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    const Clock::time_point innerEnd = Clock::now();
    const std::int64_t elapsed = (monotonicTicks() - start) * 100;
    const Clock::time_point outerEnd = Clock::now();
    // Rounding loses less than a tick at either end.
    const std::int64_t tick = 100;
    EXPECT_GE(elapsed, std::chrono::nanoseconds(innerEnd - innerStart).count() - tick);
    EXPECT_LE(elapsed, std::chrono::nanoseconds(outerEnd - outerStart).count() + tick);
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
