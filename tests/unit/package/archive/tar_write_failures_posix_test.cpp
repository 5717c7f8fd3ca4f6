// Destinations and failures that can only be set up on POSIX systems: links, permissions, and a
// limit on file sizes.

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <stdexcept>
#include <string>
#include <system_error>

#include "support/system.h"
#include "unit/package/archive/tar_fixture.h"
#include "unit/package/dropped_privileges.h"

namespace VelmoraQuavin {
namespace {

namespace fs = std::filesystem;
using testing::DroppedPrivileges;
using testing::fileInTree;
using testing::FileTree;
using testing::IsOk;
using testing::IsStatus;
using testing::kDirectoryInTree;
using testing::openFiles;
using testing::tarDirectory;
using testing::tarEnd;
using testing::TarExtraction;
using testing::tarFile;

std::string systemText(std::errc error) {
    return std::generic_category().message(static_cast<int>(error));
}

using TarLinkedDestination = TarExtraction;

TEST_F(TarLinkedDestination, ADanglingLinkIsNotADestination) {
    fs::create_symlink("missing", to_.path() / "link");
    const FileTree before = to_.all();
    const std::string path = to_.text() + "\\link";
    to_.setDestination(path);
    EXPECT_THAT(to_.extract(tarDirectory("root") + tarFile("file", "x") + tarEnd()),
                IsStatus(FILE_ERROR, "Not a directory : " + path));
    EXPECT_EQ(to_.all(), before);
    EXPECT_EQ(to_.result(), path);
}

TEST_F(TarLinkedDestination, ALinkToADirectoryIsFollowed) {
    fs::create_directory_symlink(to_.outside(), to_.outer() / "link");
    const std::string link = (to_.outer() / "link").u8string();
    to_.setDestination(link);
    EXPECT_THAT(to_.extract(tarDirectory("top") + tarFile("top/new", "x") + tarEnd()), IsOk());
    EXPECT_EQ(to_.all().at("outside/top/new"), fileInTree("x"));
    EXPECT_EQ(to_.result(), link + "\\top");
}

// Extracts as an ordinary user into a directory that belongs to another.
class TarPermissions : public TarExtraction {
protected:
    TarPermissions() { setPermissions(kMayWrite); }
    ~TarPermissions() override { setPermissions(fs::perms::owner_all); }

    void setPermissions(fs::perms permissions) const { fs::permissions(to_.path(), permissions); }
    QuavinStatus extractAsNobody(const std::string& entries) {
        const DroppedPrivileges nobody;
        return to_.extract(entries + tarEnd());
    }

    static constexpr fs::perms kMayWrite =
        fs::perms::owner_all | fs::perms::group_all | fs::perms::others_all;
    static constexpr fs::perms kReadOnly = fs::perms::owner_read | fs::perms::owner_exec |
                                           fs::perms::group_read | fs::perms::group_exec |
                                           fs::perms::others_read | fs::perms::others_exec;
    static constexpr fs::perms kNoListing = fs::perms::owner_write | fs::perms::owner_exec |
                                            fs::perms::group_write | fs::perms::group_exec |
                                            fs::perms::others_write | fs::perms::others_exec;
};

TEST_F(TarPermissions, NothingIsWrittenToAReadOnlyDestination) {
    const std::string denied = systemText(std::errc::permission_denied);
    setPermissions(kReadOnly);
    EXPECT_THAT(
        extractAsNobody(tarFile("file", "x")),
        IsStatus(FILE_ERROR, "Archive entry \"file\": the file cannot be created: " + denied));
    EXPECT_THAT(
        extractAsNobody(tarDirectory("folder/")),
        IsStatus(FILE_ERROR,
                 "Archive entry \"folder/\": a directory cannot be created or opened: " + denied));
    EXPECT_THAT(
        extractAsNobody(tarFile("folder/file", "x")),
        IsStatus(
            FILE_ERROR,
            "Archive entry \"folder/file\": a directory cannot be created or opened: " + denied));
    EXPECT_EQ(to_.tree(), FileTree());
    EXPECT_EQ(to_.result(), to_.text());
}

TEST_F(TarPermissions, AFileInAReadOnlyDestinationIsKept) {
    to_.write("file", "kept");
    setPermissions(kReadOnly);
    EXPECT_THAT(extractAsNobody(tarFile("file", "new")),
                IsStatus(FILE_ERROR, "Archive entry \"file\": the file cannot be created: " +
                                         systemText(std::errc::permission_denied)));
    EXPECT_EQ(to_.tree(), (FileTree{{"file", fileInTree("kept")}}));
}

TEST_F(TarPermissions, ADestinationNeedNotBeReadable) {
    setPermissions(kNoListing);
    EXPECT_THAT(extractAsNobody(tarFile("folder/file", "x")), IsOk());
    setPermissions(kMayWrite);
    EXPECT_EQ(to_.tree(),
              (FileTree{{"folder", kDirectoryInTree}, {"folder/file", fileInTree("x")}}));
}

// Limits the size of this process's files, so that writing fails as on a full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        rlimit limit{};
        if (handler_ == SIG_ERR || ::getrlimit(RLIMIT_FSIZE, &previous_) != 0) {
            throw std::runtime_error("cannot prepare the limit on file sizes");
        }
        limit = previous_;
        limit.rlim_cur = bytes;
        if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) {
            throw std::runtime_error("cannot limit file sizes");
        }
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit() {
        const bool lifted = ::setrlimit(RLIMIT_FSIZE, &previous_) == 0;
        EXPECT_TRUE(std::signal(SIGXFSZ, handler_) != SIG_ERR && lifted);
    }

private:
    void (*handler_)(int);
    rlimit previous_{};
};

class TarFailedWriting : public TarExtraction {
protected:
    // Extracts a file that exceeds the limit after one that does not.
    QuavinStatus extractTooMuch() {
        const std::string archive = tarFile("folder/small", std::string(4096, 's')) +
                                    tarFile("folder/large", std::string(4097, 'l')) +
                                    tarFile("behind") + tarEnd();
        const FileSizeLimit limit(4096);
        return to_.extract(archive);
    }
};

TEST_F(TarFailedWriting, NoIncompleteFileIsLeft) {
    EXPECT_THAT(
        extractTooMuch(),
        IsStatus(FILE_ERROR, "Archive entry \"folder/large\": the file cannot be written: " +
                                 systemText(std::errc::file_too_large)));
    EXPECT_EQ(to_.tree(), (FileTree{{"folder", kDirectoryInTree},
                                    {"folder/small", fileInTree(std::string(4096, 's'))}}));
    EXPECT_EQ(to_.result(), to_.text());
}

TEST_F(TarFailedWriting, TheExistingFileIsKept) {
    to_.write("folder/large", "old");
    EXPECT_EQ(extractTooMuch().getCode(), FILE_ERROR);
    EXPECT_EQ(to_.tree(), (FileTree{{"folder", kDirectoryInTree},
                                    {"folder/large", fileInTree("old")},
                                    {"folder/small", fileInTree(std::string(4096, 's'))}}));
}

TEST_F(TarFailedWriting, NoFileIsLeftOpen) {
    const std::size_t before = openFiles();
    EXPECT_EQ(extractTooMuch().getCode(), FILE_ERROR);
    EXPECT_EQ(openFiles(), before);
}

}  // namespace
}  // namespace VelmoraQuavin
