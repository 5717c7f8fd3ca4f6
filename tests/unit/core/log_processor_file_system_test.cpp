#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "quavin/logging.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin {
namespace {

using testing::TempDirectory;

// Two lines of sixty "=".
const std::string kBanner =
    "============================================================\n"
    "============================================================\n";

class LogProcessorFileSystemTest : public ::testing::Test {
protected:
    void run(const String& message, const String& prefix = "") const {
        LogProcessorFileSystem processor(directory_.text(), prefix, false);
        process(processor, message);
    }
    static void process(LogProcessorFileSystem& processor, const String& message) {
        LogRecord record;
        record.message = message;
        processor.process(record);
    }
    bool isEmpty() const { return std::filesystem::is_empty(directory_.path()); }

    TempDirectory directory_;
};

TEST_F(LogProcessorFileSystemTest, ANewFileStartsWithTheBanner) {
    const LogProcessorFileSystem processor(directory_.text(), "", false);
    EXPECT_EQ(directory_.readText("log.txt"), kBanner);
}

TEST_F(LogProcessorFileSystemTest, TheBannerIsTwoLinesOfSixtyEqualsSigns) {
    run("message");
    const std::string line(60, '=');
    EXPECT_EQ(directory_.readText("log.txt"), line + "\n" + line + "\nmessage\n");
}

TEST_F(LogProcessorFileSystemTest, ASecondRunFollowsThreeBlankLinesAndItsBanner) {
    run("first");
    run("second");
    EXPECT_EQ(directory_.readText("log.txt"), kBanner + "first\n\n\n\n" + kBanner + "second\n");
}

TEST_F(LogProcessorFileSystemTest, KeepsTheExistingContent) {
    directory_.write("log.txt", "not a log");
    run("message");
    EXPECT_EQ(directory_.readText("log.txt"), "not a log\n\n\n" + kBanner + "message\n");
}

TEST_F(LogProcessorFileSystemTest, AnEmptyFileCountsAsNew) {
    directory_.write("log.txt", "");
    run("message");
    EXPECT_EQ(directory_.readText("log.txt"), kBanner + "message\n");
}

TEST_F(LogProcessorFileSystemTest, ThePrefixStartsTheFileName) {
    run("message", "host_");
    EXPECT_EQ(directory_.readText("host_log.txt"), kBanner + "message\n");
    EXPECT_FALSE(std::filesystem::exists(directory_.path() / "log.txt"));
}

TEST_F(LogProcessorFileSystemTest, CreatesNoFileWhenDisabled) {
    LogProcessorFileSystem processor(directory_.text(), "", true);
    process(processor, "message");
    EXPECT_TRUE(isEmpty());
}

TEST_F(LogProcessorFileSystemTest, LeavesAnEarlierLogAloneWhenDisabled) {
    directory_.write("log.txt", "earlier");
    LogProcessorFileSystem processor(directory_.text(), "", true);
    process(processor, "message");
    EXPECT_EQ(directory_.readText("log.txt"), "earlier");
}

TEST_F(LogProcessorFileSystemTest, WritesMessagesUpToTheirFirstZeroByte) {
    run(String("before\0after", 12));
    EXPECT_EQ(directory_.readText("log.txt"), kBanner + "before\n");
}

TEST_F(LogProcessorFileSystemTest, EveryLineIsFlushedImmediately) {
    LogProcessorFileSystem processor(directory_.text(), "", false);
    process(processor, "first");
    EXPECT_EQ(directory_.readText("log.txt"), kBanner + "first\n");
    process(processor, "second");
    EXPECT_EQ(directory_.readText("log.txt"), kBanner + "first\nsecond\n");
}

TEST_F(LogProcessorFileSystemTest, OtherProcessesMayWriteToTheFile) {
    LogProcessorFileSystem processor(directory_.text(), "", false);
    std::ofstream other(directory_.path() / "log.txt", std::ios::app);
    other << "of another process" << std::endl;
    EXPECT_TRUE(other.good());
    EXPECT_EQ(directory_.readText("log.txt"), kBanner + "of another process\n");
}

TEST_F(LogProcessorFileSystemTest, AMissingDirectoryIsIgnoredAndNotCreated) {
    LogProcessorFileSystem processor(directory_.entry("missing"), "", false);
    EXPECT_NO_THROW(process(processor, "message"));
    EXPECT_TRUE(isEmpty());
}

TEST_F(LogProcessorFileSystemTest, ADirectoryNamedLikeTheFileIsIgnored) {
    std::filesystem::create_directory(directory_.path() / "log.txt");
    LogProcessorFileSystem processor(directory_.text(), "", false);
    EXPECT_NO_THROW(process(processor, "message"));
    EXPECT_TRUE(std::filesystem::is_empty(directory_.path() / "log.txt"));
}

TEST_F(LogProcessorFileSystemTest, ADirectoryNameThatIsNotUtf8IsIgnored) {
    LogProcessorFileSystem processor(directory_.text() + "/\xff", "", false);
    EXPECT_NO_THROW(process(processor, "message"));
    EXPECT_TRUE(isEmpty());
}

TEST_F(LogProcessorFileSystemTest, TheDirectoryMayUseTheLibrarysSeparator) {
    std::filesystem::create_directory(directory_.path() / "logs");
    const LogProcessorFileSystem processor(directory_.entry("logs"), "", false);
    EXPECT_EQ(directory_.readText("logs/log.txt"), kBanner);
}

TEST_F(LogProcessorFileSystemTest, TheDirectoryMayHaveANonAsciiName) {
    const std::string name = "\xc3\xa9\xe2\x82\xac";  // an e with acute, and the euro sign
    std::filesystem::create_directory(directory_.path() / std::filesystem::u8path(name));
    const LogProcessorFileSystem processor(directory_.entry(name), "", false);
    EXPECT_EQ(directory_.readText(name + "/log.txt"), kBanner);
}

}  // namespace
}  // namespace VelmoraQuavin
