#include "platform/windows/pending_file.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "support/file_tree.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin::internal::platform {
namespace {

namespace fs = std::filesystem;
using testing::fileInTree;
using testing::FileTree;
using Existing = PendingFile::Existing;

FileHandle openDirectory(const fs::path& path) {
    return FileHandle(::CreateFileW(path.c_str(), FILE_TRAVERSE | FILE_READ_ATTRIBUTES,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

class PendingFileTest : public ::testing::Test {
protected:
    PendingFileTest() : opened_(openDirectory(directory_.path())) {}

    HANDLE directory() const { return opened_.get(); }
    FileTree tree() const { return testing::treeOf(directory_.path()); }

    testing::TempDirectory directory_;
    FileHandle opened_;
};

TEST_F(PendingFileTest, AppearsUnderItsNameOnlyOncePublished) {
    {
        PendingFile file(directory());
        ASSERT_TRUE(file);
        EXPECT_TRUE(file.write("con", 3));
        EXPECT_TRUE(file.write("tent", 4));
        EXPECT_FALSE(fs::exists(directory_.path() / "file"));
        EXPECT_TRUE(file.putAt(L"file", Existing::kKept));
    }
    EXPECT_EQ(tree(), (FileTree{{"file", fileInTree("content")}}));
}

TEST_F(PendingFileTest, DisappearsUnlessPublished) {
    {
        PendingFile file(directory());
        EXPECT_TRUE(file.write("x", 1));
    }
    EXPECT_EQ(tree(), FileTree());
}

TEST_F(PendingFileTest, ReplacesOrKeepsAnExistingFile) {
    directory_.write("file", "old");
    {
        PendingFile file(directory());
        EXPECT_TRUE(file.write("new", 3));
        EXPECT_FALSE(file.putAt(L"file", Existing::kKept));
        EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_ALREADY_EXISTS));
    }
    EXPECT_EQ(tree(), (FileTree{{"file", fileInTree("old")}}));
    {
        PendingFile file(directory());
        EXPECT_TRUE(file.write("new", 3));
        EXPECT_TRUE(file.putAt(L"file", Existing::kReplaced));
    }
    EXPECT_EQ(tree(), (FileTree{{"file", fileInTree("new")}}));
}

TEST_F(PendingFileTest, SeveralMayBePendingAtOnce) {
    {
        PendingFile first(directory());
        PendingFile second(directory());
        EXPECT_TRUE(first.write("1", 1));
        EXPECT_TRUE(second.write("2", 1));
        EXPECT_TRUE(second.putAt(L"second", Existing::kKept));
        EXPECT_TRUE(first.putAt(L"first", Existing::kKept));
    }
    EXPECT_EQ(tree(), (FileTree{{"first", fileInTree("1")}, {"second", fileInTree("2")}}));
}

// The process to be ended is a second run of this program, which takes its directory from here.
constexpr const char* kPlace = "QUAVIN_TEST_PLACE";

TEST(PendingFileDeathTest, TheSystemRemovesTheFileOfATerminatedProcess) {
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    const char* const given = std::getenv(kPlace);
    std::unique_ptr<testing::TempDirectory> directory;
    if (given == nullptr) {
        directory = std::make_unique<testing::TempDirectory>();
        ASSERT_EQ(::_putenv_s(kPlace, directory->text().c_str()), 0);
    }
    EXPECT_EXIT(
        {
            const FileHandle opened = openDirectory(fs::u8path(std::getenv(kPlace)));
            PendingFile file(opened.get());
            if (file.write("half of a text", 14)) {
                ::TerminateProcess(::GetCurrentProcess(), 3);
            }
        },
        ::testing::ExitedWithCode(3), "");
    ::_putenv_s(kPlace, "");
    EXPECT_EQ(testing::treeOf(directory->path()), FileTree());
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
