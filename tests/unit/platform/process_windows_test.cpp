#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/process.h"

namespace VelmoraQuavin::internal::platform {
namespace {

TEST(EnvironmentVariable, MayHaveAnyLetters) {
    ::_wputenv(L"QUAVIN_TEST_Größe=日本 \xd834\xdd1e");
    EXPECT_EQ(environmentVariable("QUAVIN_TEST_Größe"), "日本 \xf0\x9d\x84\x9e");
    ::_wputenv(L"QUAVIN_TEST_Größe=");
    EXPECT_EQ(environmentVariable("QUAVIN_TEST_Größe"), std::nullopt);
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
