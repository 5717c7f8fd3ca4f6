// The overload without a length creates directories through the system's narrow interface, which
// reads names in the system's code page; everything else goes through the wide one.

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <string>

#include "unit/package/archive/tar_fixture.h"

namespace VelmoraQuavin {
namespace {

namespace fs = std::filesystem;
using testing::expectThrows;
using testing::fileInTree;
using testing::FileTree;
using testing::IsOk;
using testing::kDirectoryInTree;
using testing::tarDirectory;
using testing::tarEnd;
using testing::TarExtraction;
using testing::tarFile;

class TarDestinationOutsideAscii : public TarExtraction {
protected:
    TarDestinationOutsideAscii() {
        fs::create_directory(to_.path() / fs::u8path(kName));
        to_.setDestination(to_.text() + "\\" + kName);
    }

    static constexpr const char* kName = "größe";
};

TEST_F(TarDestinationOutsideAscii, FilesAreExtracted) {
    EXPECT_THAT(to_.extractUnbounded(tarFile("file", "content") + tarEnd()), IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{kName, kDirectoryInTree},
                                    {std::string(kName) + "/file", fileInTree("content")}}));
}

TEST_F(TarDestinationOutsideAscii, DirectoriesThrowFileException) {
    if (::GetACP() == CP_UTF8) {
        GTEST_SKIP() << "the narrow interface of this system takes UTF-8";
    }
    const std::string destination = to_.result();
    expectThrows<FileException>([&] { to_.extractUnbounded(tarDirectory("folder/") + tarEnd()); },
                                FILE_ERROR, "Path incorrect : " + destination + "\\folder/");
    EXPECT_EQ(to_.tree(), (FileTree{{kName, kDirectoryInTree}}));
    EXPECT_EQ(to_.result(), destination);
}

TEST_F(TarDestinationOutsideAscii, TheOverloadWithALengthCreatesDirectories) {
    EXPECT_THAT(to_.extract(tarDirectory("folder/") + tarEnd()), IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{kName, kDirectoryInTree},
                                    {std::string(kName) + "/folder", kDirectoryInTree}}));
}

}  // namespace
}  // namespace VelmoraQuavin
