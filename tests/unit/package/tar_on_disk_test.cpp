// What lies in an archive's way in the destination.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "support/case_name.h"
#include "unit/package/tar_fixture.h"

namespace VelmoraQuavin {
namespace {

namespace fs = std::filesystem;
using testing::CaseName;
using testing::fileInTree;
using testing::FileTree;
using testing::IsOk;
using testing::IsStatus;
using testing::kDirectoryInTree;
using testing::linkInTree;
using testing::tarDirectory;
using testing::tarEnd;
using testing::TarExtraction;
using testing::tarFile;

const std::string kLinkInTheWay = "a symbolic link is in its way";

class TarOnDisk : public TarExtraction {
protected:
    // Entries in front of the one in whose way something is are written, those behind it are not;
    // nothing else changes.
    void expectStops(const std::string& entry, const std::string& text) {
        FileTree expected = to_.all();
        expected["level/destination/before"] = fileInTree("written");
        EXPECT_THAT(
            to_.extract(tarFile("before", "written") + entry + tarFile("behind") + tarEnd()),
            IsStatus(FILE_ERROR, text));
        EXPECT_EQ(to_.all(), expected);
        EXPECT_EQ(to_.result(), to_.text());
    }
    fs::path inside(const std::string& name) const { return to_.path() / name; }
};

struct Link {
    std::string name;
    std::string target;  // seen from the destination
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

TEST_P(TarLinks, AreNotWrittenThrough) {
    to_.write("innocent", "kept");
    makeLink("link");
    expectStops(tarFile("link", "new"), "Archive entry \"link\": " + kLinkInTheWay);
}

TEST_P(TarLinks, AreNotTakenForDirectories) {
    to_.write("innocent", "kept");
    makeLink("link");
    expectStops(tarDirectory("link/"), "Archive entry \"link/\": " + kLinkInTheWay);
}

TEST_P(TarLinks, AreNotPassedInTheBeginning) {
    to_.write("innocent", "kept");
    makeLink("link");
    expectStops(tarFile("link/file", "new"), "Archive entry \"link/file\": " + kLinkInTheWay);
    expectStops(tarFile("link/a/file", "new"), "Archive entry \"link/a/file\": " + kLinkInTheWay);
    expectStops(tarDirectory("link/a"), "Archive entry \"link/a\": " + kLinkInTheWay);
}

TEST_P(TarLinks, AreNotPassedFurtherDown) {
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

TEST_F(TarOnDisk, AFileInADirectorysWayStops) {
    to_.write("name", "kept");
    expectStops(tarDirectory("name"),
                "Archive entry \"name\": a file is where a directory is needed");
    expectStops(tarFile("name/file", "new"),
                "Archive entry \"name/file\": a file is where a directory is needed");
}

TEST_F(TarOnDisk, ADirectoryInAFilesWayStops) {
    to_.write("full/file", "kept");
    fs::create_directory(inside("empty"));
    expectStops(tarFile("full", "new"),
                "Archive entry \"full\": a directory is where the file is needed");
    expectStops(tarFile("empty", "new"),
                "Archive entry \"empty\": a directory is where the file is needed");
}

TEST_F(TarOnDisk, AnArchiveThatIsInItsOwnWayStops) {
    expectStops(tarFile("before/file", "new"),
                "Archive entry \"before/file\": a file is where a directory is needed");
}

// Opening it would wait for a reader.
TEST_F(TarOnDisk, AFifoInTheWayStops) {
    ASSERT_EQ(::mkfifo(inside("fifo").c_str(), 0666), 0);
    const std::string what = "something that is no plain file is in its way";
    expectStops(tarFile("fifo", "new"), "Archive entry \"fifo\": " + what);
    expectStops(tarFile("fifo/file", "new"), "Archive entry \"fifo/file\": " + what);
    expectStops(tarDirectory("fifo"), "Archive entry \"fifo\": " + what);
}

TEST_F(TarOnDisk, AFileThatIsThereIsReplaced) {
    to_.write("folder/file", "something longer");
    EXPECT_THAT(to_.extract(tarFile("folder/file", "short") + tarEnd()), IsOk());
    EXPECT_EQ(to_.tree(),
              (FileTree{{"folder", kDirectoryInTree}, {"folder/file", fileInTree("short")}}));
}

TEST_F(TarOnDisk, AReadOnlyFileIsReplaced) {
    to_.write("file", "old");
    fs::permissions(inside("file"), fs::perms::owner_read);
    EXPECT_THAT(to_.extract(tarFile("file", "new") + tarEnd()), IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"file", fileInTree("new")}}));
}

TEST_F(TarOnDisk, AnotherNameOfAReplacedFileKeepsItsContent) {
    fs::create_hard_link(to_.outside() / "file", inside("file"));
    EXPECT_THAT(to_.extract(tarFile("file", "new") + tarEnd()), IsOk());
    EXPECT_EQ(to_.all().at("outside/file"), fileInTree("untouched"));
    EXPECT_EQ(to_.tree(), (FileTree{{"file", fileInTree("new")}}));
}

TEST_F(TarOnDisk, DirectoriesThatAreThereKeepWhatTheyHold) {
    to_.write("a/b/kept", "kept");
    EXPECT_THAT(to_.extract(tarDirectory("a/") + tarFile("a/b/new", "new") + tarEnd()), IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"a", kDirectoryInTree},
                                    {"a/b", kDirectoryInTree},
                                    {"a/b/kept", fileInTree("kept")},
                                    {"a/b/new", fileInTree("new")}}));
}

TEST_F(TarOnDisk, LinksBesideTheWayDoNotMatter) {
    fs::create_directory_symlink("../../outside", inside("link"));
    EXPECT_THAT(to_.extract(tarFile("folder/file", "new") + tarEnd()), IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"link", linkInTree("../../outside")},
                                    {"folder", kDirectoryInTree},
                                    {"folder/file", fileInTree("new")}}));
}

}  // namespace
}  // namespace VelmoraQuavin
