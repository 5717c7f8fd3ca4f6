#include "platform/posix/new_name.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "support/file_tree.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin::internal::platform {
namespace {

namespace fs = std::filesystem;
using testing::fileInTree;
using testing::FileTree;
using testing::kDirectoryInTree;

using Rename = bool (*)(int directory, const std::string& from, const std::string& to);

/// Renaming in one step, and in the several steps for systems that cannot do that.
class NewName : public ::testing::TestWithParam<Rename> {
protected:
    bool rename(const std::string& from, const std::string& to) const {
        return GetParam()(AT_FDCWD, directory_.text() + "/" + from, directory_.text() + "/" + to);
    }
    FileTree tree() const { return testing::treeOf(directory_.path()); }

    testing::TempDirectory directory_;
};
INSTANTIATE_TEST_SUITE_P(BothWays, NewName, ::testing::Values(&renameToNew, &renameToNewInSteps));

TEST_P(NewName, RenamesAFile) {
    directory_.write("old", "content");
    EXPECT_TRUE(rename("old", "new"));
    EXPECT_EQ(tree(), (FileTree{{"new", fileInTree("content")}}));
}

TEST_P(NewName, RenamesADirectory) {
    directory_.write("old/file", "content");
    EXPECT_TRUE(rename("old", "new"));
    EXPECT_EQ(tree(), (FileTree{{"new", kDirectoryInTree}, {"new/file", fileInTree("content")}}));
}

TEST_P(NewName, RefusesANameThatIsTaken) {
    directory_.write("file", "content");
    directory_.write("folder/file", "content");
    directory_.write("taken", "precious");
    fs::create_directory(directory_.path() / "empty");
    fs::create_symlink("nowhere", directory_.path() / "link");
    const FileTree before = tree();
    for (const char* from : {"file", "folder"}) {
        for (const char* to : {"taken", "empty", "link"}) {
            EXPECT_FALSE(rename(from, to)) << from << to;
            EXPECT_EQ(errno, EEXIST) << from << to;
        }
    }
    EXPECT_EQ(tree(), before);
}

TEST_P(NewName, FailsIfItsDirectoryIsMissing) {
    directory_.write("file", "content");
    directory_.write("folder/file", "content");
    const FileTree before = tree();
    for (const char* from : {"file", "folder", "missing"}) {
        EXPECT_FALSE(rename(from, "no/new")) << from;
        EXPECT_EQ(errno, ENOENT) << from;
    }
    EXPECT_EQ(tree(), before);
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
