// What can be in an archive's way on POSIX systems only: links, which anyone may create there,
// pipes, and read-only files, which are replaced all the same.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "support/case_name.h"
#include "unit/package/archive/tar_on_disk_fixture.h"

namespace VelmoraQuavin {
namespace {

namespace fs = std::filesystem;
using testing::CaseName;
using testing::fileInTree;
using testing::FileTree;
using testing::IsOk;
using testing::kDirectoryInTree;
using testing::linkInTree;
using testing::tarDirectory;
using testing::tarEnd;
using testing::tarFile;
using testing::TarOnDisk;

const std::string kLinkInTheWay = "a symbolic link is in its way";

struct Link {
    std::string name;
    std::string target;  // relative to the destination
    bool toDirectory;
};

class TarLinks : public TarOnDisk, public ::testing::WithParamInterface<Link> {
protected:
    void makeLink(const std::string& name, const std::string& up = "") const {
        const std::string target = up + GetParam().target;
        if (GetParam().toDirectory) {
            fs::create_directory_symlink(target, inside(name));
        } else {
            fs::create_symlink(target, inside(name));
        }
    }
};

TEST_P(TarLinks, ALinkIsNotWrittenThrough) {
    to_.write("innocent", "kept");
    makeLink("link");
    expectStops(tarFile("link", "new"), "Archive entry \"link\": " + kLinkInTheWay);
}

TEST_P(TarLinks, ALinkIsNotTakenForADirectory) {
    to_.write("innocent", "kept");
    makeLink("link");
    expectStops(tarDirectory("link/"), "Archive entry \"link/\": " + kLinkInTheWay);
}

TEST_P(TarLinks, ALinkIsNotFollowedAsTheFirstPart) {
    to_.write("innocent", "kept");
    makeLink("link");
    expectStops(tarFile("link/file", "new"), "Archive entry \"link/file\": " + kLinkInTheWay);
    expectStops(tarFile("link/a/file", "new"), "Archive entry \"link/a/file\": " + kLinkInTheWay);
    expectStops(tarDirectory("link/a"), "Archive entry \"link/a\": " + kLinkInTheWay);
}

TEST_P(TarLinks, ALinkIsNotFollowedFurtherDown) {
    to_.write("innocent", "kept");
    fs::create_directories(inside("a/b"));
    makeLink("a/b/link", "../../");
    expectStops(tarFile("a/b/link/file", "new"),
                "Archive entry \"a/b/link/file\": " + kLinkInTheWay);
    expectStops(tarFile("a/b/link", "new"), "Archive entry \"a/b/link\": " + kLinkInTheWay);
    expectStops(tarDirectory("a/b/link/c/d/"), "Archive entry \"a/b/link/c/d/\": " + kLinkInTheWay);
}

INSTANTIATE_TEST_SUITE_P(Targets, TarLinks,
                         ::testing::Values(Link{"DirectoryOutside", "../../outside", true},
                                           Link{"FileOutside", "../../outside/file", false},
                                           Link{"NothingOutside", "../../outside/missing", false},
                                           Link{"Inside", "innocent", false},
                                           Link{"TheDestination", ".", true},
                                           Link{"NothingInside", "missing", false},
                                           Link{"Itself", "link", false}),
                         CaseName());

// Opening it would wait for a reader.
TEST_F(TarOnDisk, AFifoInTheWayStopsExtraction) {
    ASSERT_EQ(::mkfifo(inside("fifo").c_str(), 0666), 0);
    const std::string what = "something that is not a regular file is in its way";
    expectStops(tarFile("fifo", "new"), "Archive entry \"fifo\": " + what);
    expectStops(tarFile("fifo/file", "new"), "Archive entry \"fifo/file\": " + what);
    expectStops(tarDirectory("fifo"), "Archive entry \"fifo\": " + what);
}

TEST_F(TarOnDisk, AReadOnlyFileIsReplaced) {
    to_.write("file", "old");
    fs::permissions(inside("file"), fs::perms::owner_read);
    EXPECT_THAT(to_.extract(tarFile("file", "new") + tarEnd()), IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"file", fileInTree("new")}}));
}

TEST_F(TarOnDisk, LinksOffThePathDoNotMatter) {
    fs::create_directory_symlink("../../outside", inside("link"));
    EXPECT_THAT(to_.extract(tarFile("folder/file", "new") + tarEnd()), IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"link", linkInTree("../../outside")},
                                    {"folder", kDirectoryInTree},
                                    {"folder/file", fileInTree("new")}}));
}

}  // namespace
}  // namespace VelmoraQuavin
