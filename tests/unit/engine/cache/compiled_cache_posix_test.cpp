#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>
#include <vector>

#include "cache/cache_fixture.h"
#include "support/file_tree.h"
#include "unit/package/dropped_privileges.h"

namespace VelmoraQuavin::internal {
namespace {

namespace fs = std::filesystem;
using ::testing::EndsWith;
using testing::FileTree;
using ::testing::HasSubstr;
using ::testing::Optional;

class CompiledCachePosix : public CacheFixture {
protected:
    fs::path file() const { return directory_.path() / name_.fileName(); }
    // Runs a function in another process, which ends with it.
    template <typename Function>
    static pid_t inChild(Function function) {
        const pid_t child = ::fork();
        if (child == 0) {
            function();
            ::_exit(0);
        }
        return child;
    }
    static int statusOf(pid_t child) {
        int status = -1;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        return status;
    }
    // Stores entries of one name until it is killed.
    pid_t keepStoring(char letter) const {
        return inChild([this, letter] {
            const std::string content(kLargeSize, letter);
            while (cache_.store(name_, *checksum_, bufferWith(content)).empty()) {
            }
        });
    }
    void expectValidOrAbsent() {
        const std::optional<std::string> found = find(name_, *checksum_);
        EXPECT_EQ(problem_, "");
        if (found.has_value()) {
            EXPECT_EQ(*found, std::string(kLargeSize, found->front()));
        }
    }

    static constexpr std::size_t kLargeSize = 4'000'000;
    const EntryName name_ = entryNamed("network");
};

TEST_F(CompiledCachePosix, AnEntryIsForItsOwnerOnly) {
    const mode_t before = ::umask(0);
    EXPECT_EQ(store(name_, *checksum_, "content"), "");
    ::umask(before);
    EXPECT_EQ(fs::status(file()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    fs::permissions(file(), fs::perms::all);
    EXPECT_EQ(store(name_, *checksum_, "content"), "");
    EXPECT_EQ(fs::status(file()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(CompiledCachePosix, APipeInPlaceOfAnEntryIsAMissAndIsReplaced) {
    // It has no writer, so waiting for one would take forever.
    ASSERT_EQ(::mkfifo(file().c_str(), 0600), 0);
    EXPECT_EQ(find(name_, *checksum_), std::nullopt);
    EXPECT_THAT(problem_, EndsWith("\" is not a regular file"));
    EXPECT_EQ(store(name_, *checksum_, "content"), "");
    EXPECT_THAT(find(name_, *checksum_), Optional(std::string("content")));
}

TEST_F(CompiledCachePosix, ALinkThatLeadsNowhereIsReportedAndReplaced) {
    fs::create_symlink("nowhere", file());
    EXPECT_EQ(find(name_, *checksum_), std::nullopt);
    EXPECT_THAT(problem_, HasSubstr("\" cannot be opened: "));
    EXPECT_EQ(store(name_, *checksum_, "content"), "");
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(file())));
    EXPECT_FALSE(fs::exists(directory_.path() / "nowhere"));
}

TEST_F(CompiledCachePosix, AHugeFileOfAnotherKindIsAMissWithoutBeingRead) {
    // Sparse, so that it takes no room. Memory for it would not be granted, or not be used in time.
    ASSERT_EQ(::close(::creat(file().c_str(), 0600)), 0);
    fs::resize_file(file(), std::uintmax_t{1} << 42);
    EXPECT_EQ(find(name_, *checksum_), std::nullopt);
    EXPECT_THAT(problem_, HasSubstr("\" is damaged"));
    fs::remove(file());
}

TEST_F(CompiledCachePosix, WithoutTheRightToWriteNothingIsStored) {
    EXPECT_EQ(store(name_, *checksum_, "old"), "");
    fs::permissions(directory_.path(), static_cast<fs::perms>(0555));
    fs::permissions(file(), fs::perms::all);
    {
        const testing::DroppedPrivileges dropped;
        EXPECT_THAT(store(name_, *checksum_, "new"),
                    HasSubstr("\" cannot be created: Permission denied"));
        EXPECT_THAT(find(name_, *checksum_), Optional(std::string("old"))) << problem_;
    }
    fs::permissions(directory_.path(), fs::perms::owner_all);
}

TEST_F(CompiledCachePosix, WithoutTheRightToReadAnEntryIsAMiss) {
    EXPECT_EQ(store(name_, *checksum_, "content"), "");
    fs::permissions(directory_.path(), static_cast<fs::perms>(0755));
    fs::permissions(file(), fs::perms::none);
    const testing::DroppedPrivileges dropped;
    EXPECT_EQ(find(name_, *checksum_), std::nullopt);
    EXPECT_THAT(problem_, EndsWith("\" cannot be opened: Permission denied"));
}

TEST_F(CompiledCachePosix, ADirectoryThatCannotBeListedIsReported) {
    fs::permissions(directory_.path(), static_cast<fs::perms>(0333));
    const CompiledCache limited(directory_.text(), 80);
    {
        const testing::DroppedPrivileges dropped;
        EXPECT_THAT(limited.store(name_, *checksum_, bufferWith("content")),
                    EndsWith("\" cannot be listed: Permission denied"));
    }
    fs::permissions(directory_.path(), fs::perms::owner_all);
    EXPECT_THAT(find(name_, *checksum_), Optional(std::string("content")));
}

TEST_F(CompiledCachePosix, WhatDoesNotFitIsReportedAndLeavesNothing) {
    EXPECT_EQ(store(name_, *checksum_, "old"), "");
    const FileTree before = testing::treeOf(directory_.path());
    // A limit on the size of files fails a write as a full disk does.
    const pid_t child = inChild([this] {
        const struct rlimit limit = {100'000, 100'000};
        const bool limited =
            std::signal(SIGXFSZ, SIG_IGN) != SIG_ERR && ::setrlimit(RLIMIT_FSIZE, &limit) == 0;
        const std::string problem =
            cache_.store(name_, *checksum_, bufferWith(std::string(200'000, 'x')));
        ::_exit(limited && problem.find("\" cannot be written: ") != std::string::npos ? 0 : 1);
    });
    EXPECT_EQ(statusOf(child), 0);
    EXPECT_EQ(testing::treeOf(directory_.path()), before);
    EXPECT_THAT(find(name_, *checksum_), Optional(std::string("old")));
}

TEST_F(CompiledCachePosix, AKilledWriterLeavesAValidEntryOrNoneAndNoContentElsewhereForLong) {
    for (int round = 0; round < 20; ++round) {
        const pid_t child = keepStoring('x');
        std::this_thread::sleep_for(std::chrono::microseconds(500 * round));
        ::kill(child, SIGKILL);
        EXPECT_TRUE(WIFSIGNALED(statusOf(child)));
        expectValidOrAbsent();
    }
    EXPECT_EQ(store(name_, *checksum_, "content"), "");
    // What may stay is an empty file, of a process that was killed while it created that file.
    for (const auto& [name, content] : testing::treeOf(directory_.path())) {
        EXPECT_TRUE(name == name_.fileName() || content == testing::fileInTree("")) << name;
    }
}

TEST_F(CompiledCachePosix, ProcessesThatStoreTheSameEntryAtOnceLeaveAValidOne) {
    const std::vector<pid_t> children = {keepStoring('1'), keepStoring('2')};
    while (!find(name_, *checksum_).has_value()) {
        ASSERT_EQ(problem_, "");
    }
    for (int round = 0; round < 50; ++round) {
        expectValidOrAbsent();
    }
    for (const pid_t child : children) {
        // Neither has met a failure, which would have ended it.
        EXPECT_EQ(::waitpid(child, nullptr, WNOHANG), 0);
        ::kill(child, SIGKILL);
        EXPECT_TRUE(WIFSIGNALED(statusOf(child)));
    }
    expectValidOrAbsent();
}

}  // namespace
}  // namespace VelmoraQuavin::internal
