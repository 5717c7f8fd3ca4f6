#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "private_file_case.h"

namespace VelmoraQuavin::internal::platform {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
namespace fs = std::filesystem;

constexpr fs::perms kOwner = fs::perms::owner_read | fs::perms::owner_write;

class PrivateFileMode : public PrivateFile {
protected:
    void writeWithMode(const std::string& name, const std::string& content, fs::perms mode) {
        directory_.write(name, content);
        fs::permissions(directory_.path() / name, mode);
    }
};

TEST_F(PrivateFileMode, AFileThatOnlyItsOwnerMayReadIsRead) {
    writeWithMode("key", "secret", kOwner);
    EXPECT_THAT(read("key"), IsEmpty());
    EXPECT_EQ(outcome_, PrivateReading::kDone);
    EXPECT_EQ(got(), "secret");
}

TEST_F(PrivateFileMode, AFileThatGroupOrOthersMayReadIsRefused) {
    for (const fs::perms more : {fs::perms::group_read, fs::perms::others_read}) {
        writeWithMode("key", "secret", kOwner | more);
        EXPECT_THAT(read("key"), HasSubstr("can be read by others: "));
        EXPECT_EQ(outcome_, PrivateReading::kOpenToOthers);
        EXPECT_EQ(size_, 0U);
        EXPECT_THAT(read("key", OpenToOthers::kAllowed), IsEmpty());
        EXPECT_EQ(got(), "secret");
        size_ = 0;
    }
}

TEST_F(PrivateFileMode, AFileThatGroupOrOthersMayChangeIsRefused) {
    for (const fs::perms more : {fs::perms::group_write, fs::perms::others_write}) {
        writeWithMode("key", "secret", kOwner | more);
        EXPECT_EQ(read("key"), "can be changed by others: run chmod go-w");
        EXPECT_EQ(outcome_, PrivateReading::kOpenToOthers);
        EXPECT_THAT(read("key", OpenToOthers::kAllowed), IsEmpty());
        EXPECT_EQ(got(), "secret");
    }
    writeWithMode("key", "secret", kOwner | fs::perms::group_write | fs::perms::others_read);
    EXPECT_EQ(read("key"), "can be read and changed by others: run chmod go-rw");
}

TEST_F(PrivateFileMode, ReplacingAFileKeepsItsMode) {
    writeWithMode("file", "old", kOwner | fs::perms::group_write);
    EXPECT_THAT(replace("file", "new"), IsEmpty());
    EXPECT_EQ(fs::status(directory_.path() / "file").permissions(),
              kOwner | fs::perms::group_write);
}

TEST_F(PrivateFileMode, AFileReplacedForItsOwnerIsForItsOwnerOnly) {
    writeWithMode("existing", "old", kOwner | fs::perms::group_write | fs::perms::others_read);
    const mode_t before = ::umask(0);
    EXPECT_THAT(replace("existing", "new", Readers::kOwner), IsEmpty());
    EXPECT_THAT(replace("missing", "new", Readers::kOwner), IsEmpty());
    ::umask(before);
    for (const char* name : {"existing", "missing"}) {
        EXPECT_EQ(directory_.read(name), "new");
        EXPECT_EQ(fs::status(directory_.path() / name).permissions(), kOwner);
    }
}

TEST_F(PrivateFileMode, ANewFileIsForItsOwnerOnly) {
    const mode_t before = ::umask(0);
    EXPECT_THAT(write("key", "secret"), IsEmpty());
    ::umask(before);
    EXPECT_EQ(directory_.read("key"), "secret");
    EXPECT_EQ(fs::status(directory_.path() / "key").permissions(), kOwner);
}

TEST_F(PrivateFileMode, AFileForEveryoneHasTheUsualMode) {
    const mode_t before = ::umask(022);
    EXPECT_THAT(write("result", "open", Readers::kEveryone), IsEmpty());
    ::umask(before);
    EXPECT_EQ(fs::status(directory_.path() / "result").permissions(),
              kOwner | fs::perms::group_read | fs::perms::others_read);
}

TEST_F(PrivateFileMode, APrivateDirectoryIsForItsOwnerOnly) {
    const mode_t before = ::umask(0);
    EXPECT_TRUE(makePrivateDirectory(directory_.entry("folder")));
    ::umask(before);
    EXPECT_EQ(fs::status(directory_.path() / "folder").permissions(), fs::perms::owner_all);
}

TEST_F(PrivateFile, APipeIsRefused) {
    // It has no writer, so reading it would wait forever.
    ASSERT_EQ(::mkfifo((directory_.path() / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(read("pipe"), "is not a regular file");
}

TEST_F(PrivateFile, ALinkIsNotWrittenThrough) {
    fs::create_symlink("elsewhere", directory_.path() / "key");
    EXPECT_THAT(write("key", "new"), HasSubstr("cannot be created"));
    EXPECT_FALSE(fs::exists(directory_.path() / "elsewhere"));
}

TEST_F(PrivateFile, ALinkIsReplacedItself) {
    directory_.write("elsewhere", "precious");
    fs::create_symlink("elsewhere", directory_.path() / "key");
    EXPECT_THAT(replace("key", "new", Readers::kOwner), IsEmpty());
    EXPECT_EQ(directory_.read("elsewhere"), "precious");
    EXPECT_EQ(directory_.read("key"), "new");
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
