// Exceptions that the library throws, in a host's own handlers.

#include <gtest/gtest.h>

#include <stdexcept>

#include "quavin/files.h"
#include "quavin/status.h"
#include "support/status_matcher.h"

namespace VelmoraQuavin {
namespace {

using testing::IsStatus;

TEST(ExceptionsInAHost, LibraryExceptionsAreCaughtByTheirType) {
    EXPECT_THROW(FileUtils::getFileSize(Filepath("no\\such\\file")), FileException);
    EXPECT_THROW(FileUtils::getFileSize(Filepath("\xFF")), std::range_error);
}

// The library asks the C++ runtime for the exception that the host is handling, so both must share
// one runtime.
TEST(ExceptionsInAHost, LibraryExceptionsBecomeAStatusInTheHostsHandler) {
    try {
        FileUtils::getFileSize(Filepath("no\\such\\file"));
        FAIL() << "nothing was thrown";
    } catch (...) {
        EXPECT_THAT(getStatusFromCurrentException(), IsStatus(FILE_ERROR, "File error!"));
    }
}

TEST(ExceptionsInAHost, HostExceptionsBecomeAStatusToo) {
    try {
        throw std::runtime_error("of the host");
    } catch (...) {
        EXPECT_THAT(getStatusFromCurrentException(), IsStatus(FAILURE, "of the host"));
    }
}

}  // namespace
}  // namespace VelmoraQuavin
