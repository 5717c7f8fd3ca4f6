#include <gtest/gtest.h>

#include <windows.h>

#include <string>

#include "platform/process.h"

namespace VelmoraQuavin::internal::platform {
namespace {

constexpr const wchar_t* kName = L"QUAVIN_TEST_Größe";

TEST(EnvironmentVariable, MayHaveAnyLetters) {
    ::SetEnvironmentVariableW(kName, L"日本 \xd834\xdd1e");
    EXPECT_EQ(environmentVariable("QUAVIN_TEST_Größe"), "日本 \xf0\x9d\x84\x9e");
}

TEST(EnvironmentVariable, MayBeOfAnyLength) {
    for (const std::size_t length : {1u, 255u, 256u, 257u, 10000u}) {
        ::SetEnvironmentVariableW(kName, std::wstring(length, L'x').c_str());
        EXPECT_EQ(environmentVariable("QUAVIN_TEST_Größe"), std::string(length, 'x'));
    }
}

TEST(EnvironmentVariable, MayBeEmpty) {
    ::SetEnvironmentVariableW(kName, L"");
    EXPECT_EQ(environmentVariable("QUAVIN_TEST_Größe"), "");
}

TEST(EnvironmentVariable, IsNothingAfterItsRemoval) {
    ::SetEnvironmentVariableW(kName, L"x");
    ::SetEnvironmentVariableW(kName, nullptr);
    EXPECT_EQ(environmentVariable("QUAVIN_TEST_Größe"), std::nullopt);
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
