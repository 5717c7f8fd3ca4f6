#include "platform/posix/pending_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <string>

#include "support/file_tree.h"
#include "support/temp_directory.h"

namespace VelmoraQuavin::internal::platform {
namespace {

namespace fs = std::filesystem;
using testing::fileInTree;
using testing::FileTree;

class PendingFileTest : public ::testing::Test {
protected:
    PendingFileTest() : opened_(::open(directory_.text().c_str(), kPassThrough)) {}

    int directory() const { return opened_.get(); }
    FileTree tree() const { return testing::treeOf(directory_.path()); }
    mode_t modeOf(const std::string& name) const {
        struct stat attributes {};
        EXPECT_EQ(::stat((directory_.path() / name).c_str(), &attributes), 0);
        return attributes.st_mode & 07777;
    }
    // Forks a process that is killed while it writes.
    void dieWhileWriting(const std::string& content) const {
        const pid_t child = ::fork();
        if (child == 0) {
            PendingFile file(directory(), 0644);
            file.write(content.data(), content.size());
            ::kill(::getpid(), SIGKILL);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status));
    }

    testing::TempDirectory directory_;
    FileDescriptor opened_;
};

TEST_F(PendingFileTest, AppearsUnderItsNameOnlyOncePublished) {
    PendingFile file(directory(), 0644);
    ASSERT_TRUE(file);
    EXPECT_TRUE(file.write("con", 3));
    EXPECT_TRUE(file.write("tent", 4));
    EXPECT_EQ(tree().count("file"), 0u);
    EXPECT_TRUE(file.publish("file"));
    EXPECT_EQ(tree(), (FileTree{{"file", fileInTree("content")}}));
}

TEST_F(PendingFileTest, DisappearsUnlessPublished) {
    {
        PendingFile file(directory(), 0644);
        EXPECT_TRUE(file.write("x", 1));
        EXPECT_EQ(tree().size(), 1u);
    }
    EXPECT_EQ(tree(), FileTree());
}

TEST_F(PendingFileTest, WhatAKilledProcessLeftCanBeRemovedAlone) {
    directory_.write(".quavin-1", "precious");
    dieWhileWriting("x");
    const PendingFile alive(directory(), 0644);  // takes the place of the first
    const FileTree before = tree();
    EXPECT_EQ(before.size(), 2u);
    PendingFile::removeAbandonedIn(directory());
    EXPECT_EQ(tree(), before);
    fs::permissions(directory_.path() / ".quavin-1", fs::perms::sticky_bit, fs::perm_options::add);
    PendingFile::removeAbandonedIn(directory());
    EXPECT_EQ(tree().count(".quavin-1"), 0u);
    EXPECT_EQ(tree().count(".quavin-0"), 1u);
}

TEST_F(PendingFileTest, ReplacesAnExistingFile) {
    directory_.write("file", "old");
    PendingFile file(directory(), 0644);
    EXPECT_TRUE(file.write("new", 3));
    EXPECT_EQ(tree().at("file"), fileInTree("old"));
    EXPECT_TRUE(file.replace("file"));
    EXPECT_EQ(tree(), (FileTree{{"file", fileInTree("new")}}));
}

TEST_F(PendingFileTest, IsNotPublishedUnderATakenName) {
    directory_.write("file", "old");
    fs::create_directory(directory_.path() / "folder");
    fs::create_symlink("nowhere", directory_.path() / "link");
    const FileTree before = tree();
    for (const char* name : {"file", "folder", "link"}) {
        PendingFile file(directory(), 0644);
        EXPECT_TRUE(file.write("new", 3));
        EXPECT_FALSE(file.publish(name)) << name;
        EXPECT_EQ(errno, EEXIST) << name;
    }
    EXPECT_EQ(tree(), before);
}

TEST_F(PendingFileTest, HasTheModeThatTheUmaskLeaves) {
    const mode_t mask = ::umask(027);
    for (const auto& [name, mode] : {std::pair{"open", 0666}, std::pair{"closed", 0600}}) {
        PendingFile file(directory(), static_cast<mode_t>(mode));
        EXPECT_TRUE(file.publish(name));
    }
    PendingFile file(directory(), 0666);
    file.setMode(0666);
    EXPECT_TRUE(file.publish("given"));
    ::umask(mask);
    EXPECT_EQ(modeOf("open"), 0640u);
    EXPECT_EQ(modeOf("closed"), 0600u);
    EXPECT_EQ(modeOf("given"), 0666u);
}

TEST_F(PendingFileTest, AKilledProcessesFileIsRemovedByTheNextProcess) {
    dieWhileWriting("half of a text");
    ASSERT_EQ(tree().size(), 1u);
    ASSERT_EQ(tree().begin()->second, fileInTree("half of a text"));
    {
        PendingFile file(directory(), 0644);
        EXPECT_TRUE(file.write("whole", 5));
        EXPECT_TRUE(file.publish("file"));
    }
    EXPECT_EQ(tree(), (FileTree{{"file", fileInTree("whole")}}));
}

TEST_F(PendingFileTest, ALivingProcessesFileIsNotTouched) {
    PendingFile first(directory(), 0644);
    PendingFile second(directory(), 0644);
    EXPECT_TRUE(first.write("1", 1));
    EXPECT_TRUE(second.write("2", 1));
    EXPECT_TRUE(second.publish("second"));
    PendingFile third(directory(), 0644);
    EXPECT_TRUE(third.write("3", 1));
    EXPECT_TRUE(third.publish("third"));
    EXPECT_TRUE(first.publish("first"));
    EXPECT_EQ(tree(), (FileTree{{"first", fileInTree("1")},
                                {"second", fileInTree("2")},
                                {"third", fileInTree("3")}}));
}

TEST_F(PendingFileTest, TouchesNothingThatIsNotMarkedAsUnfinished) {
    directory_.write("elsewhere/file", "precious");
    directory_.write(".quavin-0", "precious");
    fs::create_symlink("elsewhere/file", directory_.path() / ".quavin-1");
    fs::create_directory(directory_.path() / ".quavin-2");
    ASSERT_EQ(::mkfifo((directory_.path() / ".quavin-3").c_str(), 0600), 0);
    fs::create_hard_link(directory_.path() / "elsewhere" / "file", directory_.path() / ".quavin-4");
    FileTree expected = tree();
    PendingFile file(directory(), 0644);
    ASSERT_TRUE(file);
    EXPECT_TRUE(file.write("new", 3));
    EXPECT_TRUE(file.publish("file"));
    expected["file"] = fileInTree("new");
    EXPECT_EQ(tree(), expected);
}

TEST_F(PendingFileTest, IsCreatedHoweverManyNamesAreTaken) {
    for (int i = 0; i < 200; ++i) {
        directory_.write(".quavin-" + std::to_string(i), "taken");
    }
    PendingFile file(directory(), 0644);
    ASSERT_TRUE(file);
    EXPECT_TRUE(file.publish("file"));
    EXPECT_EQ(tree().size(), 201u);
}

TEST_F(PendingFileTest, IsNotCreatedIfTheDirectoryIsGone) {
    const FileDescriptor gone(::open((directory_.text() + "/gone").c_str(), kPassThrough));
    const PendingFile file(gone.get(), 0644);
    EXPECT_FALSE(file);
    EXPECT_EQ(errno, EBADF);
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
