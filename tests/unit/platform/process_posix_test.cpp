#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/process.h"

namespace VelmoraQuavin::internal::platform {
namespace {

TEST(ProgramArguments, AreThoseAfterTheProgramsName) {
    const char* const argv[] = {"tool", "one", "", "größe\xff", nullptr};
    EXPECT_THAT(programArguments(4, argv), ::testing::ElementsAre("one", "", "größe\xff"));
    EXPECT_THAT(programArguments(1, argv), ::testing::IsEmpty());
    EXPECT_THAT(programArguments(0, argv + 4), ::testing::IsEmpty());
}

TEST(EnvironmentVariable, HasTheBytesThatWereSet) {
    ASSERT_EQ(::setenv("QUAVIN_TEST_VARIABLE", "größe\xff", 1), 0);
    EXPECT_EQ(environmentVariable("QUAVIN_TEST_VARIABLE"), "größe\xff");
    ASSERT_EQ(::setenv("QUAVIN_TEST_VARIABLE", "", 1), 0);
    EXPECT_EQ(environmentVariable("QUAVIN_TEST_VARIABLE"), "");
    ASSERT_EQ(::unsetenv("QUAVIN_TEST_VARIABLE"), 0);
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
