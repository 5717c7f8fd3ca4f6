// A file that cannot be replaced, as only Windows has it: while somebody holds it open. And names
// that its files cannot have.

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
using testing::kDirectoryInTree;
using testing::openFiles;
using testing::tarDirectory;
using testing::tarEnd;
using testing::TarExtraction;
using testing::tarFile;

class TarOpenFile : public TarExtraction {
protected:
    TarOpenFile() { to_.write("file", "old"); }

    // Opened without sharing it.
    FileHandle open() const {
        return FileHandle(::CreateFileW((to_.path() / "file").c_str(), GENERIC_READ, 0, nullptr,
                                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    }
    QuavinStatus extract() {
        return to_.extract(tarFile("before", "written") + tarFile("file", "new") +
                           tarFile("behind") + tarEnd());
    }
};

TEST_F(TarOpenFile, InTheWayStopsAndStays) {
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

TEST_F(TarOpenFile, IsReplacedOnceItIsClosed) {
    {
        const FileHandle file = open();
        ASSERT_TRUE(file);
        EXPECT_EQ(extract().getCode(), FILE_ERROR);
    }
    EXPECT_THAT(extract(), IsOk());
    EXPECT_EQ(to_.tree().at("file"), fileInTree("new"));
}

TEST_F(TarOpenFile, InTheWayLeavesNoOtherOpen) {
    const FileHandle file = open();
    ASSERT_TRUE(file);
    extract();  // what the system opens once and keeps
    const std::size_t before = openFiles();
    EXPECT_EQ(extract().getCode(), FILE_ERROR);
    EXPECT_EQ(openFiles(), before);
}

class TarImpossibleNames : public TarExtraction,
                           public ::testing::WithParamInterface<const char*> {};

TEST_P(TarImpossibleNames, StopTheExtraction) {
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

// A device, a stream of a file, a pattern, and one that becomes another name.
INSTANTIATE_TEST_SUITE_P(Names, TarImpossibleNames,
                         ::testing::Values("NUL", "con.txt", "NUL .txt", "COM1", "LPT\xC2\xB9",
                                           "CONOUT$", "file:stream", "file*", "what?", "file.",
                                           "file "));

}  // namespace
}  // namespace VelmoraQuavin
