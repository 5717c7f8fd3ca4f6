#include "platform/file_system.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>
#include <string>

#include "support/temp_directory.h"

namespace VelmoraQuavin::internal::platform {
namespace {

namespace fs = std::filesystem;
using testing::TempDirectory;

TEST(CreateDirectory, ReportsANewDirectory) {
    const TempDirectory directory;
    EXPECT_EQ(createDirectory(directory.entry("new")), DirectoryCreation::kCreated);
    EXPECT_TRUE(fs::is_directory(directory.path() / "new"));
}

TEST(CreateDirectory, ReportsAMissingParent) {
    const TempDirectory directory;
    directory.write("file", "content");
    EXPECT_EQ(createDirectory(directory.entry("missing\\new")), DirectoryCreation::kParentMissing);
    EXPECT_EQ(createDirectory(directory.entry("file\\new")), DirectoryCreation::kParentMissing);
    EXPECT_EQ(createDirectory(""), DirectoryCreation::kParentMissing);
}

TEST(CreateDirectory, ReportsOtherFailures) {
    const TempDirectory directory;
    directory.write("file", "content");
    EXPECT_EQ(createDirectory(directory.text()), DirectoryCreation::kOtherFailure);
    EXPECT_EQ(createDirectory(directory.entry("file")), DirectoryCreation::kOtherFailure);
    EXPECT_EQ(createDirectory(directory.entry(std::string(300, 'x'))),
              DirectoryCreation::kOtherFailure);
}

TEST(RemoveFile, ReportsWhetherTheFileWasRemoved) {
    const TempDirectory directory;
    directory.write("file", "content");
    EXPECT_TRUE(removeFile(directory.entry("file")));
    EXPECT_FALSE(fs::exists(directory.path() / "file"));
    EXPECT_FALSE(removeFile(directory.entry("file")));
}

TEST(RemoveFile, DoesNotRemoveADirectory) {
    const TempDirectory directory;
    fs::create_directory(directory.path() / "empty");
    EXPECT_FALSE(removeFile(directory.entry("empty")));
    EXPECT_TRUE(fs::is_directory(directory.path() / "empty"));
}

TEST(IsMissing, IsTrueOnlyForAMissingEntryOfAnExistingDirectory) {
    const TempDirectory directory;
    directory.write("file", "content");
    EXPECT_TRUE(isMissing(directory.entry("missing")));
    EXPECT_TRUE(isMissing(directory.entry("missing\\")));
    EXPECT_FALSE(isMissing(directory.entry("file")));
    EXPECT_FALSE(isMissing(directory.text()));
    EXPECT_FALSE(isMissing(directory.entry("missing\\child")));
    EXPECT_FALSE(isMissing(directory.entry("missing\\child\\")));
    EXPECT_FALSE(isMissing(directory.entry("file\\child")));
    EXPECT_FALSE(isMissing(""));
}

TEST(IsMissing, LooksInTheRootForItsEntries) {
    EXPECT_TRUE(isMissing("\\no-such-entry-here"));
    EXPECT_FALSE(isMissing("\\"));
}

TEST(IsMissing, LooksInTheCurrentDirectoryForABareName) {
    EXPECT_TRUE(isMissing("no-such-entry-here"));
    EXPECT_FALSE(isMissing("."));
}

TEST(StandardPath, LeadsToTheSameEntry) {
    const TempDirectory directory;
    directory.write("größe 日本/file", "content");
    EXPECT_TRUE(fs::exists(standardPath(directory.entry("größe 日本\\file"))));
    EXPECT_TRUE(fs::exists(standardPath(directory.entry("größe 日本\\file") + String("\0x", 2))));
    EXPECT_FALSE(fs::exists(standardPath(directory.entry("missing"))));
    EXPECT_THROW(static_cast<void>(standardPath("\xFF")), std::range_error);
}

TEST(IsMissing, ThrowsBadConversionForAPathThatIsNotUtf8) {
    try {
        static_cast<void>(isMissing("\xFF"));
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::range_error& error) {
        EXPECT_STREQ(error.what(), "bad conversion");
    }
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
