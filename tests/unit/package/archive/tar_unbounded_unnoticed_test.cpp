// What the overload without a length does not report: files that it cannot write.

#include <gtest/gtest.h>

#include <string>

#include "unit/package/archive/tar_fixture.h"

namespace VelmoraQuavin {
namespace {

namespace fs = std::filesystem;
using testing::fileInTree;
using testing::FileTree;
using testing::IsOk;
using testing::tarDirectory;
using testing::tarEnd;
using testing::TarExtraction;
using testing::tarFile;

class TarUnboundedUnnoticed : public TarExtraction {};

TEST_F(TarUnboundedUnnoticed, AFileWithoutItsDirectoryIsLostSilently) {
    EXPECT_THAT(
        to_.extractUnbounded(tarFile("missing/file", "lost") + tarFile("next", "next") + tarEnd()),
        IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"next", fileInTree("next")}}));
}

TEST_F(TarUnboundedUnnoticed, ADirectoryInAFilesWayIsNotReported) {
    fs::create_directory(to_.path() / "name");
    EXPECT_THAT(to_.extractUnbounded(tarFile("name", "lost") + tarFile("next", "next") + tarEnd()),
                IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"name", "directory"}, {"next", fileInTree("next")}}));
}

TEST_F(TarUnboundedUnnoticed, AFileInADirectorysWayIsNotReported) {
    to_.write("name", "kept");
    EXPECT_THAT(to_.extractUnbounded(tarDirectory("name/") + tarFile("name/file", "lost") +
                                     tarFile("next", "next") + tarEnd()),
                IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"name", fileInTree("kept")}, {"next", fileInTree("next")}}));
    EXPECT_EQ(to_.result(), to_.text() + "\\name/");
}

TEST_F(TarUnboundedUnnoticed, AFullDeviceIsNotReported) {
    to_.setDestination("/dev");
    EXPECT_THAT(to_.extractUnbounded(tarFile("full", std::string(100000, 'x')) + tarEnd()), IsOk());
    EXPECT_EQ(to_.result(), "");
}

TEST_F(TarUnboundedUnnoticed, AMissingDestinationIsNotReported) {
    to_.setDestination(to_.text() + "\\missing");
    EXPECT_THAT(to_.extractUnbounded(tarDirectory("root/") + tarFile("root/file", "lost") +
                                     tarFile("file", "lost") + tarEnd()),
                IsOk());
    EXPECT_EQ(to_.tree(), FileTree());
    EXPECT_EQ(to_.result(), to_.text() + "\\missing\\root/");
}

}  // namespace
}  // namespace VelmoraQuavin
