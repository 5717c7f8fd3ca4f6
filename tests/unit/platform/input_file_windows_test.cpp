// Devices, which have names in every directory here.

#include <gtest/gtest.h>

#include <string>

#include "platform/input_file.h"

namespace VelmoraQuavin::internal::platform {
namespace {

TEST(InputFileRefusal, MeetsDevices) {
    for (const char* name : {"NUL", "nul", "\\\\.\\NUL"}) {
        std::string problem;
        EXPECT_FALSE(InputFile::open(name, problem).has_value()) << name;
        EXPECT_EQ(problem, "is no plain file") << name;
    }
}

TEST(InputFileRefusal, MeetsTheRootOfADrive) {
    std::string problem;
    EXPECT_FALSE(InputFile::open("C:\\", problem).has_value());
    EXPECT_EQ(problem, "is no plain file");
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
