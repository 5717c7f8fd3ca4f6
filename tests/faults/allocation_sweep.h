#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <vector>

#include "allocation_watch.h"

namespace VelmoraQuavin::testing {

/// For operations that are quick: every allocation is swept.
constexpr int kAllAllocations = 1'000'000;

/// Numbers from 1 to `last`, about `most` of them and evenly spread, the first and the last
/// included; all if the environment asks for everything.
inline std::vector<int> sampleUpTo(int last, int most) {
#if defined(QUAVIN_EMULATED)
    const bool everything = false;
#else
    const bool everything = std::getenv("QUAVIN_TEST_EVERYTHING") != nullptr;
#endif
    const int step = everything ? 1 : std::max(1, last / most);
    std::vector<int> sample;
    for (int which = 1; which < last; which += step) {
        sample.push_back(which);
    }
    sample.push_back(last);
    return sample;
}

/// Repeats an operation with one of the library's allocations on this thread failing, another one
/// each time.
/// @param most the size of the sample of allocations.
/// @param operation must make no allocations of its own, because these fail as well.
/// @param check is called after every run and told whether an allocation failed; it also checks
/// that the
///     operation works again.
template <typename Operation, typename Check>
void sweepAllocations(int most, Operation operation, Check check) {
    operation();  // what is set up once is left out
    check(false);
    int count = 0;
    {
        const AllocationFailure counter(std::numeric_limits<int>::max());
        operation();
        count = counter.made();
    }
    check(false);
    ASSERT_GT(count, 0);
    for (const int which : sampleUpTo(count, most)) {
        SCOPED_TRACE(which);
        bool happened = false;
        {
            const AllocationFailure failure(which);
            operation();
            happened = failure.happened();
        }
        // One run may need a few less than another.
        EXPECT_TRUE(happened || which > count / 2);
        check(happened);
        if (::testing::Test::HasFatalFailure()) {
            return;
        }
    }
}

}  // namespace VelmoraQuavin::testing
