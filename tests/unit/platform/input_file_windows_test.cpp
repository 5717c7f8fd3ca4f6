// Devices, whose names exist in every directory on Windows, and the roots of drives.

#include <gtest/gtest.h>

#include <string>

#include "platform/input_file.h"

namespace VelmoraQuavin::internal::platform {
namespace {

TEST(InputFileRefusal, DevicesAreRefused) {
    for (const char* name : {"NUL", "nul", "\\\\.\\NUL"}) {
        std::string problem;
        EXPECT_FALSE(InputFile::open(name, problem).has_value()) << name;
        EXPECT_EQ(problem, "is not a regular file") << name;
    }
}

TEST(InputFileRefusal, TheRootOfADriveIsRefused) {
    std::string problem;
    EXPECT_FALSE(InputFile::open("C:\\", problem).has_value());
    EXPECT_EQ(problem, "is not a regular file");
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
