#include "core/sized_block.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>

namespace VelmoraQuavin::internal {
namespace {

TEST(SizedBlockTest, KnowsItsSizeAndIsAligned) {
    for (const std::size_t size : {0U, 1U, 63U, 64U, 100'000U}) {
        void* const block = allocateSizedBlock(size);
        ASSERT_NE(block, nullptr) << size;
        EXPECT_EQ(sizeOfBlock(block), size);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 64, 0U) << size;
        freeSizedBlock(block);
    }
}

TEST(SizedBlockTest, KeepsItsSizeWhenAllItsBytesAreWritten) {
    void* const block = allocateSizedBlock(1000);
    ASSERT_NE(block, nullptr);
    std::memset(block, 0xff, 1000);
    EXPECT_EQ(sizeOfBlock(block), 1000U);
    freeSizedBlock(block);
}

TEST(SizedBlockTest, LargePagesAreOnlyAPreference) {
    constexpr std::size_t kSize = 8U << 20U;
    auto* const block = static_cast<unsigned char*>(allocateSizedBlock(kSize, BlockPages::kLarge));
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(sizeOfBlock(block), kSize);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 64, 0U);
    block[0] = 1;
    block[kSize - 1] = 2;
    EXPECT_EQ(block[0] + block[kSize - 1], 3);
    freeSizedBlock(block);
}

TEST(SizedBlockTest, SizesThatOverflowReturnNull) {
    EXPECT_EQ(allocateSizedBlock(std::numeric_limits<std::size_t>::max()), nullptr);
    EXPECT_EQ(allocateSizedBlock(std::numeric_limits<std::size_t>::max() - 63), nullptr);
}

}  // namespace
}  // namespace VelmoraQuavin::internal
