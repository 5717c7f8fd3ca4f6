// Cases that can only be set up on POSIX systems: links, permissions and a device that is always
// full; also names that are too long.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "quavin/files.h"
#include "support/status_matcher.h"
#include "support/temp_directory.h"
#include "unit/package/dropped_privileges.h"

namespace VelmoraQuavin {
namespace {

namespace fs = std::filesystem;
using testing::DroppedPrivileges;
using testing::expectThrows;
using testing::TempDirectory;

TEST(FileUtilsLinks, ADanglingLinkExists) {
    const TempDirectory directory;
    fs::create_symlink(directory.path() / "missing", directory.path() / "link");
    EXPECT_TRUE(FileUtils::pathExists(Filepath(directory.entry("link"))));
}

TEST(FileUtilsLinks, ALinkToADirectoryIsFollowed) {
    const TempDirectory directory;
    directory.write("folder/file", "content");
    fs::create_directory_symlink(directory.path() / "folder", directory.path() / "link");
    EXPECT_TRUE(FileUtils::pathExists(Filepath(directory.entry("link\\file"))));
    EXPECT_FALSE(FileUtils::pathExists(Filepath(directory.entry("link\\missing"))));
}

TEST(FileUtilsLinks, LinksAreFollowedForReading) {
    const TempDirectory directory;
    directory.write("file", "content");
    fs::create_directory(directory.path() / "folder");
    fs::create_symlink(directory.path() / "file", directory.path() / "file_link");
    fs::create_directory_symlink(directory.path() / "folder", directory.path() / "folder_link");
    EXPECT_EQ(FileUtils::getFileSize(Filepath(directory.entry("file_link"))), 7u);
    expectThrows<FileException>(
        [&] { FileUtils::getFileSize(Filepath(directory.entry("folder_link"))); }, FILE_ERROR,
        "File error!");
}

TEST(FileUtilsLinks, DeletingALinkKeepsItsTarget) {
    const TempDirectory directory;
    directory.write("file", "content");
    fs::create_symlink(directory.path() / "file", directory.path() / "link");
    FileUtils::deleteFile(Filepath(directory.entry("link")));
    EXPECT_FALSE(fs::is_symlink(directory.path() / "link"));
    EXPECT_EQ(directory.read("file"), "content");
}

// The emulator that runs the tests for Windows treats such a name as missing.
TEST(FileUtilsLongNames, ANameThatIsTooLongExists) {
    const TempDirectory directory;
    EXPECT_TRUE(FileUtils::pathExists(Filepath(directory.entry(std::string(300, 'x')))));
}

TEST(FileUtilsFullDevice, WritingToAFullDeviceAnswersTrue) {
    ASSERT_FALSE((std::ofstream("/dev/full") << "content" << std::flush).good());
    EXPECT_TRUE(FileUtils::writeBinaryDataToFile("content", 7, Filepath("/dev/full")));
    EXPECT_TRUE(FileUtils::writeStringToFile("content", Filepath("/dev/full")));
}

// A directory that may be entered but not changed, with a file that may not be read and a directory
// that may not be entered.
class FileUtilsPermissions : public ::testing::Test {
protected:
    FileUtilsPermissions() {
        directory_.write("file", "content");
        directory_.write("closed/file", "content");
        fs::permissions(directory_.path() / "file", fs::perms::none);
        fs::permissions(directory_.path() / "closed", fs::perms::none);
        fs::permissions(directory_.path(), kReadOnly);
    }
    ~FileUtilsPermissions() override {
        fs::permissions(directory_.path(), fs::perms::owner_all);
        fs::permissions(directory_.path() / "closed", fs::perms::owner_all);
    }

    Filepath path(const std::string& name) const { return Filepath(directory_.entry(name)); }

    static constexpr fs::perms kReadOnly = fs::perms::owner_read | fs::perms::owner_exec |
                                           fs::perms::group_read | fs::perms::group_exec |
                                           fs::perms::others_read | fs::perms::others_exec;
    TempDirectory directory_;
};

TEST_F(FileUtilsPermissions, CreateDirIgnoresMissingPermissions) {
    const DroppedPrivileges nobody;
    EXPECT_NO_THROW(FileUtils::createDir(path("new")));
    EXPECT_FALSE(fs::exists(directory_.path() / "new"));
}

TEST_F(FileUtilsPermissions, PathExistsAnswersTrueIfItMayNotLook) {
    const DroppedPrivileges nobody;
    EXPECT_TRUE(FileUtils::pathExists(path("closed\\missing")));
    EXPECT_FALSE(FileUtils::pathExists(path("missing")));
}

TEST_F(FileUtilsPermissions, DeleteFileThrowsWithoutPermission) {
    const DroppedPrivileges nobody;
    const std::string file = directory_.entry("file");
    expectThrows<FileException>([&] { FileUtils::deleteFile(Filepath(file)); }, FILE_ERROR,
                                "Could not delete file : " + file);
}

TEST_F(FileUtilsPermissions, AFileWithoutReadPermissionCannotBeOpened) {
    const DroppedPrivileges nobody;
    uint64 size = 4711;
    EXPECT_EQ(FileUtils::readBinaryFileToBuffer(path("file"), size), nullptr);
    EXPECT_EQ(size, 4711u);
    expectThrows<FileException>([&] { FileUtils::getFileSize(path("file")); }, FILE_ERROR,
                                "File error!");
}

TEST_F(FileUtilsPermissions, WritingAnswersTrueWithoutPermission) {
    {
        const DroppedPrivileges nobody;
        EXPECT_TRUE(FileUtils::writeBinaryDataToFile("new", 3, path("file")));
        EXPECT_TRUE(FileUtils::writeStringToFile("new", path("file")));
    }
    fs::permissions(directory_.path() / "file", fs::perms::owner_read);
    EXPECT_EQ(directory_.read("file"), "content");
}

}  // namespace
}  // namespace VelmoraQuavin
