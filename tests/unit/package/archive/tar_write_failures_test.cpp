// Destinations that cannot be extracted into; also that extraction leaves no file open.

#include <gtest/gtest.h>

#include <string>

#include "support/system.h"
#include "unit/package/archive/tar_fixture.h"

namespace VelmoraQuavin {
namespace {

using testing::FileTree;
using testing::IsOk;
using testing::IsStatus;
using testing::openFiles;
using testing::tarDirectory;
using testing::tarEnd;
using testing::TarExtraction;
using testing::tarFile;

class TarDestinations : public TarExtraction {
protected:
    void expectDestinationRefused(const std::string& path, STATUS_CODE code,
                                  const std::string& text) {
        const FileTree before = to_.all();
        to_.setDestination(path);
        EXPECT_THAT(to_.extract(tarDirectory("root") + tarFile("file", "x") + tarEnd()),
                    IsStatus(code, text));
        EXPECT_EQ(to_.all(), before);
        EXPECT_EQ(to_.result(), path);
    }
};

TEST_F(TarDestinations, AMissingDestinationIsNotCreated) {
    const std::string path = to_.text() + "\\missing";
    expectDestinationRefused(path, FILE_ERROR, "Not a directory : " + path);
}

TEST_F(TarDestinations, AFileIsNotADestination) {
    to_.write("file", "kept");
    const std::string path = to_.text() + "\\file";
    expectDestinationRefused(path, FILE_ERROR, "Not a directory : " + path);
}

// Joined with a name, it would mean the root of the file system.
TEST_F(TarDestinations, AnEmptyPathIsRefused) {
    expectDestinationRefused("", INVALID_ARGUMENTS, "The destination must not be empty");
}

TEST_F(TarDestinations, APathThatIsNotUtf8IsRefused) {
    expectDestinationRefused(to_.text() + "\xFF", FAILURE, "bad conversion");
}

TEST_F(TarDestinations, AnEmptyArchiveNeedsADestinationToo) {
    const std::string path = to_.text() + "\\missing";
    to_.setDestination(path);
    EXPECT_THAT(to_.extract(tarEnd()), IsStatus(FILE_ERROR, "Not a directory : " + path));
}

using TarWriting = TarExtraction;

TEST_F(TarWriting, ExtractionLeavesNoFileOpen) {
    to_.write("blocked", "x");
    const auto extractAndFail = [this] {
        to_.setDestination(to_.text());
        EXPECT_THAT(to_.extract(tarFile("a/b/file", "x") + tarDirectory("c/d/e") + tarFile("f") +
                                tarFile("f") + tarEnd()),
                    IsOk());
        to_.setDestination(to_.text());
        EXPECT_EQ(to_.extract(tarFile("a/b/file") + tarFile("blocked/b/c") + tarEnd()).getCode(),
                  FILE_ERROR);
        EXPECT_EQ(to_.extract(tarFile("file") + tarFile("../x") + tarEnd()).getCode(),
                  INVALID_ARGUMENTS);
    };
    extractAndFail();  // the system may open files here that it keeps open
    const std::size_t before = openFiles();
    extractAndFail();
    EXPECT_EQ(openFiles(), before);
}

}  // namespace
}  // namespace VelmoraQuavin
