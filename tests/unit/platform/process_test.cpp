#include "platform/process.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace VelmoraQuavin::internal::platform {
namespace {

TEST(PeakResidentMemory, CoversMemoryThatWasUsedOnce) {
    constexpr std::size_t kSize = std::size_t{64} << 20;
    const std::uint64_t before = peakResidentMemory();
    EXPECT_GT(before, std::uint64_t{1} << 20);
    {
        std::vector<char> block(kSize);
        std::memset(block.data(), 1, block.size());
        volatile char used = block[kSize / 2];
        static_cast<void>(used);
    }
    EXPECT_GE(peakResidentMemory(), kSize);
    EXPECT_LT(peakResidentMemory(), std::uint64_t{1} << 36);
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
