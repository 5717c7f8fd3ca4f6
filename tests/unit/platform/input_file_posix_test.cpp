// Pipes and devices, which are directory entries only on POSIX systems.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "platform/input_file.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin::internal::platform {
namespace {

TEST(InputFileRefusal, APipeIsRefusedWithoutWaitingForAWriter) {
    const testing::TempDirectory directory;
    const std::string pipe = directory.text() + "/pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::string problem;
    EXPECT_FALSE(InputFile::open(pipe, problem).has_value());
    EXPECT_EQ(problem, "is not a regular file");
}

TEST(InputFileRefusal, DevicesAreRefused) {
    std::string problem;
    EXPECT_FALSE(InputFile::open("/dev/zero", problem).has_value());
    EXPECT_EQ(problem, "is not a regular file");
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
