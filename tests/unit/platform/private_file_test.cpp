#include "platform/private_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "private_file_case.h"

namespace VelmoraQuavin::internal::platform {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
namespace fs = std::filesystem;

std::vector<std::string> namesIn(const testing::TempDirectory& directory) {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(directory.path())) {
        names.push_back(entry.path().filename().u8string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

TEST_F(PrivateFile, AFileIsReadAsItWasWritten) {
    EXPECT_THAT(write("key", "secret"), IsEmpty());
    EXPECT_EQ(directory_.read("key"), "secret");
    EXPECT_THAT(read("key"), IsEmpty());
    EXPECT_EQ(outcome_, PrivateReading::kDone);
    EXPECT_EQ(got(), "secret");
}

TEST_F(PrivateFile, ALongFileIsReadUpToTheCapacity) {
    EXPECT_THAT(write("key", "0123456789"), IsEmpty());
    EXPECT_THAT(read("key"), IsEmpty());
    EXPECT_EQ(got(), "01234567");
}

TEST_F(PrivateFile, AnEmptyFileGivesNoBytes) {
    EXPECT_THAT(write("key", ""), IsEmpty());
    size_ = 5;
    EXPECT_THAT(read("key"), IsEmpty());
    EXPECT_EQ(size_, 0U);
}

TEST_F(PrivateFile, AMissingFileOrADirectoryIsRefused) {
    EXPECT_THAT(read("missing"), HasSubstr("cannot be opened: "));
    fs::create_directory(directory_.path() / "folder");
    EXPECT_EQ(read("folder"), "is not a regular file");
    EXPECT_EQ(outcome_, PrivateReading::kFailed);
}

TEST_F(PrivateFile, WritingANewFileReplacesNothing) {
    directory_.write("key", "old");
    EXPECT_THAT(write("key", "new"), HasSubstr("cannot be created: "));
    EXPECT_EQ(directory_.read("key"), "old");
}

TEST_F(PrivateFile, FailedWritingLeavesNothingBehind) {
    fs::create_directory(directory_.path() / "folder");
    EXPECT_THAT(write("folder", "new"), HasSubstr("cannot be created: "));
    EXPECT_THAT(namesIn(directory_), ElementsAre("folder"));
}

TEST_F(PrivateFile, WritingLeavesNoOtherFileBehind) {
    EXPECT_THAT(write("key", "secret"), IsEmpty());
    EXPECT_THAT(namesIn(directory_), ElementsAre("key"));
}

TEST_F(PrivateFile, ReplacingCreatesOrReplacesAFile) {
    EXPECT_THAT(replace("file", "first"), IsEmpty());
    EXPECT_EQ(directory_.read("file"), "first");
    EXPECT_THAT(replace("file", ""), IsEmpty());
    EXPECT_EQ(directory_.read("file"), "");
    EXPECT_THAT(namesIn(directory_), ElementsAre("file"));
}

TEST_F(PrivateFile, FailedReplacingChangesNothing) {
    directory_.write("folder/file", "old");
    EXPECT_THAT(replace("folder", "new"), HasSubstr("cannot be written: "));
    EXPECT_THAT(replace("no\\file", "new"), HasSubstr("cannot be created: "));
    EXPECT_EQ(directory_.read("folder/file"), "old");
    EXPECT_THAT(namesIn(directory_), ElementsAre("folder"));
}

TEST_F(PrivateFile, FilesAndDirectoriesAreMovedToANewName) {
    directory_.write("file", "content");
    directory_.write("folder/file", "inner");
    std::string problem;
    EXPECT_EQ(moveToNew(directory_.entry("file"), directory_.entry("moved"), problem),
              Moving::kDone);
    EXPECT_EQ(moveToNew(directory_.entry("folder"), directory_.entry("there"), problem),
              Moving::kDone);
    EXPECT_EQ(directory_.read("moved"), "content");
    EXPECT_EQ(directory_.read("there/file"), "inner");
    EXPECT_THAT(namesIn(directory_), ElementsAre("moved", "there"));
}

TEST_F(PrivateFile, NothingIsMovedToANameThatIsTaken) {
    directory_.write("file", "content");
    directory_.write("folder/file", "inner");
    directory_.write("taken", "precious");
    fs::create_directory(directory_.path() / "taken folder");
    for (const char* from : {"file", "folder"}) {
        for (const char* to : {"taken", "taken folder"}) {
            std::string problem;
            EXPECT_EQ(moveToNew(directory_.entry(from), directory_.entry(to), problem),
                      Moving::kNameTaken)
                << from << to << problem;
        }
        std::string problem;
        EXPECT_EQ(moveToNew(directory_.entry(from), directory_.entry("no\\new"), problem),
                  Moving::kFailed);
        EXPECT_THAT(problem, HasSubstr("cannot be created: "));
    }
    EXPECT_EQ(directory_.read("taken"), "precious");
    EXPECT_THAT(namesIn(directory_), ElementsAre("file", "folder", "taken", "taken folder"));
}

TEST_F(PrivateFile, WritingIntoAMissingDirectoryIsRefused) {
    EXPECT_THAT(write("no\\key", "new"), HasSubstr("cannot be created: "));
}

TEST_F(PrivateFile, FilesAndDirectoriesMayHaveAnyLettersInTheirNames) {
    EXPECT_TRUE(makePrivateDirectory(directory_.entry("größe 日本")));
    EXPECT_THAT(write("größe 日本\\clé", "secret"), IsEmpty());
    EXPECT_EQ(directory_.read("größe 日本/clé"), "secret");
}

TEST_F(PrivateFile, ADirectoryMustBeNewAndHaveAParent) {
    EXPECT_TRUE(makePrivateDirectory(directory_.entry("folder")));
    EXPECT_TRUE(fs::is_directory(directory_.path() / "folder"));
    EXPECT_FALSE(makePrivateDirectory(directory_.entry("folder")));
    EXPECT_FALSE(makePrivateDirectory(directory_.entry("no\\folder")));
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
