// Pipes and devices, which are entries of directories on POSIX systems alone.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "platform/input_file.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin::internal::platform {
namespace {

TEST(InputFileRefusal, OfAPipeDoesNotWaitForItsWriter) {
    const testing::TempDirectory directory;
    const std::string pipe = directory.text() + "/pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::string problem;
    EXPECT_FALSE(InputFile::open(pipe, problem).has_value());
    EXPECT_EQ(problem, "is no plain file");
}

TEST(InputFileRefusal, MeetsDevices) {
    std::string problem;
    EXPECT_FALSE(InputFile::open("/dev/zero", problem).has_value());
    EXPECT_EQ(problem, "is no plain file");
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
