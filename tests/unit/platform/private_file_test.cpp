#include "platform/private_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "private_file_case.h"

namespace VelmoraQuavin::internal::platform {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
namespace fs = std::filesystem;

TEST_F(PrivateFile, IsReadAsItWasWritten) {
    EXPECT_THAT(write("key", "secret"), IsEmpty());
    EXPECT_EQ(directory_.read("key"), "secret");
    EXPECT_THAT(read("key"), IsEmpty());
    EXPECT_EQ(outcome_, PrivateReading::kDone);
    EXPECT_EQ(got(), "secret");
}

TEST_F(PrivateFile, OfMoreThanTheCapacityGivesThatMuch) {
    EXPECT_THAT(write("key", "0123456789"), IsEmpty());
    EXPECT_THAT(read("key"), IsEmpty());
    EXPECT_EQ(got(), "01234567");
}

TEST_F(PrivateFile, ThatIsEmptyGivesNoBytes) {
    EXPECT_THAT(write("key", ""), IsEmpty());
    size_ = 5;
    EXPECT_THAT(read("key"), IsEmpty());
    EXPECT_EQ(size_, 0U);
}

TEST_F(PrivateFile, ThatIsMissingOrADirectoryIsRefused) {
    EXPECT_THAT(read("missing"), HasSubstr("cannot be opened: "));
    fs::create_directory(directory_.path() / "folder");
    EXPECT_EQ(read("folder"), "is no plain file");
    EXPECT_EQ(outcome_, PrivateReading::kFailed);
}

TEST_F(PrivateFile, ReplacesNothing) {
    directory_.write("key", "old");
    EXPECT_THAT(write("key", "new"), HasSubstr("cannot be made: "));
    EXPECT_EQ(directory_.read("key"), "old");
}

TEST_F(PrivateFile, InAMissingDirectoryIsRefused) {
    EXPECT_THAT(write("no\\key", "new"), HasSubstr("cannot be made: "));
}

TEST_F(PrivateFile, NamesAndDirectoriesMayHaveAnyLetters) {
    EXPECT_TRUE(makePrivateDirectory(directory_.entry("größe 日本")));
    EXPECT_THAT(write("größe 日本\\clé", "secret"), IsEmpty());
    EXPECT_EQ(directory_.read("größe 日本/clé"), "secret");
}

TEST_F(PrivateFile, DirectoriesAreNewAndInOneThatIsThere) {
    EXPECT_TRUE(makePrivateDirectory(directory_.entry("folder")));
    EXPECT_TRUE(fs::is_directory(directory_.path() / "folder"));
    EXPECT_FALSE(makePrivateDirectory(directory_.entry("folder")));
    EXPECT_FALSE(makePrivateDirectory(directory_.entry("no\\folder")));
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
