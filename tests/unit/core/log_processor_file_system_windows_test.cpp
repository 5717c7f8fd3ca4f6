// Logs are text files with the system's line endings.

#include <gtest/gtest.h>

#include <string>

#include "quavin/logging.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin {
namespace {

using testing::TempDirectory;

// Two lines of sixty "=".
const std::string kWindowsBanner =
    "============================================================\r\n"
    "============================================================\r\n";

void run(const TempDirectory& directory, const String& message) {
    LogProcessorFileSystem processor(directory.text(), "", false);
    LogRecord record;
    record.message = message;
    processor.process(record);
}

TEST(LogProcessorFileSystemLineEndings, BannerAndMessagesEndWithCrLf) {
    const TempDirectory directory;
    run(directory, "message");
    EXPECT_EQ(directory.read("log.txt"), kWindowsBanner + "message\r\n");
}

TEST(LogProcessorFileSystemLineEndings, LineFeedsInMessagesBecomeCrLf) {
    const TempDirectory directory;
    run(directory, "first\nsecond");
    EXPECT_EQ(directory.read("log.txt"), kWindowsBanner + "first\r\nsecond\r\n");
}

TEST(LogProcessorFileSystemLineEndings, BlankLinesBetweenRunsEndWithCrLf) {
    const TempDirectory directory;
    run(directory, "first");
    run(directory, "second");
    EXPECT_EQ(directory.read("log.txt"),
              kWindowsBanner + "first\r\n\r\n\r\n\r\n" + kWindowsBanner + "second\r\n");
}

}  // namespace
}  // namespace VelmoraQuavin
