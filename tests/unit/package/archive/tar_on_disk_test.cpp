// What can be in an archive's way in the destination.

#include <gtest/gtest.h>

#include <string>

#include "unit/package/archive/tar_on_disk_fixture.h"

namespace VelmoraQuavin {
namespace {

namespace fs = std::filesystem;
using testing::fileInTree;
using testing::FileTree;
using testing::IsOk;
using testing::kDirectoryInTree;
using testing::tarDirectory;
using testing::tarEnd;
using testing::tarFile;
using testing::TarOnDisk;

TEST_F(TarOnDisk, AFileInADirectorysWayStopsExtraction) {
    to_.write("name", "kept");
    expectStops(tarDirectory("name"),
                "Archive entry \"name\": a file is where a directory is needed");
    expectStops(tarFile("name/file", "new"),
                "Archive entry \"name/file\": a file is where a directory is needed");
}

TEST_F(TarOnDisk, ADirectoryInAFilesWayStopsExtraction) {
    to_.write("full/file", "kept");
    fs::create_directory(inside("empty"));
    expectStops(tarFile("full", "new"),
                "Archive entry \"full\": a directory is where the file is needed");
    expectStops(tarFile("empty", "new"),
                "Archive entry \"empty\": a directory is where the file is needed");
}

TEST_F(TarOnDisk, AnEntryInTheWayOfALaterOneStopsExtraction) {
    expectStops(tarFile("before/file", "new"),
                "Archive entry \"before/file\": a file is where a directory is needed");
}

TEST_F(TarOnDisk, AnExistingFileIsReplaced) {
    to_.write("folder/file", "something longer");
    EXPECT_THAT(to_.extract(tarFile("folder/file", "short") + tarEnd()), IsOk());
    EXPECT_EQ(to_.tree(),
              (FileTree{{"folder", kDirectoryInTree}, {"folder/file", fileInTree("short")}}));
}

TEST_F(TarOnDisk, AHardLinkToAReplacedFileKeepsItsContent) {
    fs::create_hard_link(to_.outside() / "file", inside("file"));
    EXPECT_THAT(to_.extract(tarFile("file", "new") + tarEnd()), IsOk());
    EXPECT_EQ(to_.all().at("outside/file"), fileInTree("untouched"));
    EXPECT_EQ(to_.tree(), (FileTree{{"file", fileInTree("new")}}));
}

TEST_F(TarOnDisk, ExistingDirectoriesKeepTheirContents) {
    to_.write("a/b/kept", "kept");
    EXPECT_THAT(to_.extract(tarDirectory("a/") + tarFile("a/b/new", "new") + tarEnd()), IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"a", kDirectoryInTree},
                                    {"a/b", kDirectoryInTree},
                                    {"a/b/kept", fileInTree("kept")},
                                    {"a/b/new", fileInTree("new")}}));
}

}  // namespace
}  // namespace VelmoraQuavin
