// Pipes and devices, which are entries of directories on POSIX systems alone.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "platform/file_streams.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin::internal::platform {
namespace {

using testing::TempDirectory;

TEST(OpenFileAtEnd, RefusesAPipeAndDoesNotWaitForItsWriter) {
    const TempDirectory directory;
    const std::string pipe = directory.text() + "/pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_FALSE(openFileAtEnd(pipe).is_open());
}

TEST(OpenFileAtEnd, RefusesADevice) {
    EXPECT_FALSE(openFileAtEnd("/dev/zero").is_open());
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
