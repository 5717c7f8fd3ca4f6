#include "core/secure_wipe.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <stdexcept>

namespace VelmoraQuavin::internal {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

TEST(SecureWipeTest, OverwritesExactlyTheGivenBytes) {
    std::array<unsigned char, 5> bytes = {1, 2, 3, 4, 5};
    secureWipe(bytes.data() + 1, 3);
    EXPECT_THAT(bytes, ElementsAre(1, 0, 0, 0, 5));
}

TEST(SecureWipeTest, AcceptsAnEmptyRange) {
    EXPECT_NO_THROW(secureWipe(nullptr, 0));
}

TEST(WipeOnExitTest, OverwritesWhenTheScopeEnds) {
    std::array<unsigned char, 4> bytes = {1, 2, 3, 4};
    {
        const WipeOnExit wipe(bytes.data(), bytes.size());
        EXPECT_THAT(bytes, ElementsAre(1, 2, 3, 4));
    }
    EXPECT_THAT(bytes, Each(0));
}

TEST(WipeOnExitTest, OverwritesWhenAnExceptionLeavesTheScope) {
    std::array<unsigned char, 4> bytes = {1, 2, 3, 4};
    const auto failing = [&bytes] {
        const WipeOnExit wipe(bytes.data(), bytes.size());
        throw std::runtime_error("leaving");
    };
    EXPECT_THROW(failing(), std::runtime_error);
    EXPECT_THAT(bytes, Each(0));
}

}  // namespace
}  // namespace VelmoraQuavin::internal
