#include "platform/process.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace VelmoraQuavin::internal::platform {
namespace {

TEST(EnvironmentVariable, IsNothingIfNotSet) {
    EXPECT_EQ(environmentVariable("QUAVIN_TEST_NOTHING"), std::nullopt);
    EXPECT_NE(environmentVariable("PATH"), std::nullopt);
}

TEST(PeakResidentMemory, IncludesMemoryThatHasBeenFreed) {
    constexpr std::size_t kBlockSize = std::size_t{64} << 20;
    const std::uint64_t before = peakResidentMemory();
    EXPECT_GT(before, std::uint64_t{1} << 20);
    {
        std::vector<char> block(kBlockSize);
        std::memset(block.data(), 1, block.size());
        volatile char used = block[kBlockSize / 2];
        static_cast<void>(used);
    }
    EXPECT_GE(peakResidentMemory(), kBlockSize);
    EXPECT_LT(peakResidentMemory(), std::uint64_t{1} << 36);
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
