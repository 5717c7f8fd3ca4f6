// What the overload with a length extracts: everything the one without does, and more.

#include <gtest/gtest.h>

#include <string>

#include "support/case_name.h"
#include "support/system.h"
#include "unit/package/archive/tar_fixture.h"

namespace VelmoraQuavin {
namespace {

namespace fs = std::filesystem;
using testing::CaseName;
using testing::fileInTree;
using testing::fileOfSize;
using testing::FileTree;
using testing::IsOk;
using testing::kDirectoryInTree;
using testing::kGnuMagic;
using testing::octalChecksum;
using testing::prefixedFile;
using testing::readTarData;
using testing::tarChecksum;
using testing::TarDestination;
using testing::tarDirectory;
using testing::tarEnd;
using testing::tarEntry;
using testing::TarExtraction;
using testing::tarFields;
using testing::TarFields;
using testing::tarFile;
using testing::tarHeader;
using testing::whiteSpaceOfNames;

TarFields oldFields(const std::string& name) {
    TarFields fields = tarFields(name, '\0');
    fields.magic = "";
    return fields;
}

struct Archive {
    std::string name;
    std::string bytes;
};

class TarOverloads : public ::testing::TestWithParam<Archive> {
protected:
    // The destination's value after extraction, with the original path shown as "destination".
    static std::string resultIn(const TarDestination& to) {
        const std::string result = to.result();
        return result.compare(0, to.text().size(), to.text()) == 0
                   ? "destination" + result.substr(to.text().size())
                   : result;
    }
};

TEST_P(TarOverloads, BothExtractTheSame) {
    TarDestination unbounded;
    TarDestination bounded;
    unbounded.write("there", "to be replaced");
    bounded.write("there", "to be replaced");
    EXPECT_THAT(unbounded.extractUnbounded(GetParam().bytes), IsOk());
    EXPECT_THAT(bounded.extract(GetParam().bytes), IsOk());
    EXPECT_EQ(bounded.all(), unbounded.all());
    EXPECT_EQ(resultIn(bounded), resultIn(unbounded));
}

INSTANTIATE_TEST_SUITE_P(
    Archives, TarOverloads,
    ::testing::Values(
        Archive{"Empty", tarEnd()}, Archive{"OneZeroByte", std::string(1, '\0')},
        Archive{"FilesAlone", tarFile("one", "1") + tarFile("two", "22") + tarEnd()},
        Archive{"Replacing", tarFile("there", "new") + tarEnd()},
        Archive{"Twice", tarFile("one", "first") + tarFile("one", "2nd") + tarEnd()},
        Archive{"FirstDirectory", tarDirectory("a") + tarDirectory("b/") + tarEnd()},
        Archive{"DirectoryTwice", tarDirectory("a/") + tarDirectory("a") + tarEnd()},
        Archive{"Nested", tarFile("x") + tarDirectory("a/") + tarDirectory("a/b/") +
                              tarFile("a/b/file", "deep") + tarFile("a/file", "up") + tarEnd()},
        Archive{"Backslashes", tarDirectory("a\\") + tarFile("a\\file", "content") + tarEnd()},
        Archive{"Dots",
                tarDirectory("./") + tarDirectory("./a/") + tarFile("./a/.//f", "c") + tarEnd()},
        Archive{"Prefix", tarDirectory("a") + prefixedFile("a", "ustar") + tarEnd()},
        Archive{"GnuHasNoPrefix", tarDirectory("a") + prefixedFile("a", kGnuMagic) + tarEnd()},
        Archive{"NoMagicHasNoPrefix", tarDirectory("a") + prefixedFile("a", "") + tarEnd()},
        Archive{"NinetyNineCharacters", tarFile(std::string(99, 'n'), "content") + tarEnd()},
        Archive{"WhiteSpaceInAFilesName",
                tarFile(whiteSpaceOfNames() + "my" + whiteSpaceOfNames() + "file", "content") +
                    tarEnd()},
        Archive{"NonAscii", tarFile("größe-模型", "content") + tarEnd()},
        Archive{"Blocks", tarFile("0") + tarFile("1", "1") + tarFile("511", std::string(511, 'a')) +
                              tarFile("512", std::string(512, 'b')) +
                              tarFile("513", std::string(513, 'c')) + tarFile("last") + tarEnd()},
        Archive{"SizeAfterBlanks",
                fileOfSize("         7 ", "content") + tarFile("last") + tarEnd()},
        Archive{"SizeOfTwelveDigits", fileOfSize("000000000007", "content") + tarEnd()},
        Archive{"TextAfterTheEnd",
                tarFile("file", "x") + std::string(512, '\0') + tarFile("behind") + "no header"},
        Archive{"Simple", readTarData("accepted/simple.tar")}),
    CaseName());

class TarBounded : public TarExtraction {};

TEST_F(TarBounded, MissingDirectoriesAreCreated) {
    EXPECT_THAT(to_.extract(tarFile("a/b/file", "content") + tarDirectory("c/d/") + tarEnd()),
                IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"a", kDirectoryInTree},
                                    {"a/b", kDirectoryInTree},
                                    {"a/b/file", fileInTree("content")},
                                    {"c", kDirectoryInTree},
                                    {"c/d", kDirectoryInTree}}));
    EXPECT_EQ(to_.result(), to_.text() + "\\c/d/");
}

TEST_F(TarBounded, WhiteSpaceInNamesIsAccepted) {
    for (const char character : whiteSpaceOfNames()) {
        const std::string name = std::string("my") + character + "model";
        to_.setDestination(to_.text());
        EXPECT_THAT(to_.extract(tarDirectory(name + "/") + tarFile(name + "/file", "x") + tarEnd()),
                    IsOk());
        EXPECT_EQ(to_.tree().at(name), kDirectoryInTree);
        EXPECT_EQ(to_.tree().at(name + "/file"), fileInTree("x"));
        EXPECT_EQ(to_.result(), to_.text() + "\\" + name + "/");
    }
}

TEST_F(TarBounded, TheDestinationMayContainWhiteSpace) {
    fs::create_directory(to_.path() / "my models");
    to_.setDestination(to_.text() + "\\my models");
    EXPECT_THAT(to_.extract(tarDirectory("root/") + tarEnd()), IsOk());
    EXPECT_EQ(to_.tree().at("my models/root"), kDirectoryInTree);
    EXPECT_EQ(to_.result(), to_.text() + "\\my models\\root/");
}

TEST_F(TarBounded, AnOldStyleFileWithoutATypeIsExtracted) {
    EXPECT_THAT(to_.extract(tarEntry(oldFields("file"), "content") + tarEnd()), IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"file", fileInTree("content")}}));
    EXPECT_EQ(to_.result(), "");
}

TEST_F(TarBounded, ATrailingSeparatorMarksAnOldStyleDirectory) {
    EXPECT_THAT(to_.extract(tarEntry(oldFields("a/")) + tarEntry(oldFields("b\\")) + tarFile("c/") +
                            tarEnd()),
                IsOk());
    EXPECT_EQ(
        to_.tree(),
        (FileTree{{"a", kDirectoryInTree}, {"b", kDirectoryInTree}, {"c", kDirectoryInTree}}));
    EXPECT_EQ(to_.result(), to_.text() + "\\a/");
}

TEST_F(TarBounded, ANameOf100CharactersIsExtracted) {
    const std::string name(100, 'n');
    EXPECT_THAT(to_.extract(tarFile(name, "content") + tarEnd()), IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{name, fileInTree("content")}}));
}

TEST_F(TarBounded, ADirectorysContentIsSkipped) {
    EXPECT_THAT(to_.extract(tarEntry(tarFields("root", '5'), std::string(513, 'x')) +
                            tarFile("file") + tarEnd()),
                IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"root", kDirectoryInTree}, {"file", fileInTree("")}}));
}

TEST_F(TarBounded, ASizeMayBeInGnuTarsBinaryForm) {
    const std::string size("\x80\0\0\0\0\0\0\0\0\0\2\1", 12);
    EXPECT_THAT(to_.extract(fileOfSize(size, std::string(513, 'x')) + tarFile("next") + tarEnd()),
                IsOk());
    EXPECT_EQ(to_.tree(),
              (FileTree{{"file", fileInTree(std::string(513, 'x'))}, {"next", fileInTree("")}}));
}

TEST_F(TarBounded, AnEmptySizeMeansZero) {
    TarFields directory = tarFields("root/", '5');
    for (const std::string size : {"", "            "}) {
        directory.size = size;
        to_.setDestination(to_.text());
        EXPECT_THAT(
            to_.extract(tarEntry(directory) + fileOfSize(size, "") + tarFile("next") + tarEnd()),
            IsOk());
        EXPECT_EQ(to_.tree(), (FileTree{{"root", kDirectoryInTree},
                                        {"file", fileInTree("")},
                                        {"next", fileInTree("")}}));
    }
}

// git writes seven digits.
TEST_F(TarBounded, AChecksumMayHaveSevenDigits) {
    TarFields fields = tarFields("file");
    fields.checksum = "0" + octalChecksum(tarChecksum(tarHeader(fields, 7)));
    EXPECT_THAT(to_.extract(tarEntry(fields, "content") + tarEnd()), IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"file", fileInTree("content")}}));
}

TEST_F(TarBounded, AnEntryMayNameTheDestinationItself) {
    EXPECT_THAT(to_.extract(tarDirectory(".") + tarFile("file", "x") + tarEnd()), IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"file", fileInTree("x")}}));
    EXPECT_EQ(to_.result(), to_.text() + "\\.");
}

TEST_F(TarBounded, LargeContentIsWrittenCompletely) {
    std::string content;
    for (unsigned int i = 0; content.size() < 3000000; ++i) {
        content += std::to_string(i) + "\n";
    }
    EXPECT_THAT(to_.extract(tarFile("large", content) + tarEnd()), IsOk());
    EXPECT_TRUE(to_.tree().at("large") == fileInTree(content));
}

}  // namespace
}  // namespace VelmoraQuavin
