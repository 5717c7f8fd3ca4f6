// Failures that only Windows has: a file that cannot be replaced while it is open elsewhere, and
// names that files cannot have there.

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "platform/windows/file_handle.h"
#include "support/system.h"
#include "unit/package/archive/tar_fixture.h"

namespace VelmoraQuavin {
namespace {

using internal::platform::FileHandle;
using testing::fileInTree;
using testing::FileTree;
using testing::IsOk;
using testing::IsStatus;
using testing::IsStatusWith;
using testing::openFiles;
using testing::tarDirectory;
using testing::tarEnd;
using testing::TarExtraction;
using testing::tarFile;

class TarOpenFile : public TarExtraction {
protected:
    TarOpenFile() { to_.write("file", "old"); }

    // Opens the file without sharing it.
    FileHandle open() const {
        return FileHandle(::CreateFileW((to_.path() / "file").c_str(), GENERIC_READ, 0, nullptr,
                                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    }
    QuavinStatus extract() {
        return to_.extract(tarFile("before", "written") + tarFile("file", "new") +
                           tarFile("behind") + tarEnd());
    }
};

TEST_F(TarOpenFile, AnOpenFileStopsExtractionAndIsKept) {
    {
        const FileHandle file = open();
        ASSERT_TRUE(file);
        EXPECT_THAT(extract(),
                    IsStatusWith(FILE_ERROR, ::testing::StartsWith("Archive entry \"file\": the "
                                                                   "file cannot be written: ")));
    }
    EXPECT_EQ(to_.tree(),
              (FileTree{{"before", fileInTree("written")}, {"file", fileInTree("old")}}));
    EXPECT_EQ(to_.result(), to_.text());
}

TEST_F(TarOpenFile, AFileIsReplacedOnceItIsClosed) {
    {
        const FileHandle file = open();
        ASSERT_TRUE(file);
        EXPECT_EQ(extract().getCode(), FILE_ERROR);
    }
    EXPECT_THAT(extract(), IsOk());
    EXPECT_EQ(to_.tree().at("file"), fileInTree("new"));
}

TEST_F(TarOpenFile, AFailedReplacementLeavesNoOtherFileOpen) {
    const FileHandle file = open();
    ASSERT_TRUE(file);
    extract();  // the system may open files here that it keeps open
    const std::size_t before = openFiles();
    EXPECT_EQ(extract().getCode(), FILE_ERROR);
    EXPECT_EQ(openFiles(), before);
}

class TarImpossibleNames : public TarExtraction,
                           public ::testing::WithParamInterface<const char*> {};

TEST_P(TarImpossibleNames, ExtractionStops) {
    const std::string name = GetParam();
    EXPECT_THAT(to_.extract(tarFile("before", "written") + tarFile(name, "x") + tarEnd()),
                IsStatus(FILE_ERROR, "Archive entry \"" + name +
                                         "\": its name is not possible on this system"));
    EXPECT_THAT(to_.extract(tarDirectory(name + "/") + tarEnd()),
                IsStatus(FILE_ERROR, "Archive entry \"" + name +
                                         "/\": its name is not possible on this system"));
    EXPECT_THAT(to_.extract(tarFile(name + "/file") + tarEnd()),
                IsStatus(FILE_ERROR, "Archive entry \"" + name +
                                         "/file\": its name is not possible on this system"));
    EXPECT_EQ(to_.tree(), (FileTree{{"before", fileInTree("written")}}));
    EXPECT_EQ(to_.result(), to_.text());
}

// Devices, a stream of a file, patterns, and names that the system would change.
INSTANTIATE_TEST_SUITE_P(Names, TarImpossibleNames,
                         ::testing::Values("NUL", "con.txt", "NUL .txt", "COM1", "LPT\xC2\xB9",
                                           "CONOUT$", "file:stream", "file*", "what?", "file.",
                                           "file "));

}  // namespace
}  // namespace VelmoraQuavin
