// How the overload without a length walks an archive, and what it sets the destination to.

#include <gtest/gtest.h>

#include <string>

#include "support/case_name.h"
#include "unit/package/archive/tar_fixture.h"

namespace VelmoraQuavin {
namespace {

namespace fs = std::filesystem;
using testing::CaseName;
using testing::fileInTree;
using testing::fileOfSize;
using testing::FileTree;
using testing::IsOk;
using testing::listingOf;
using testing::readTarData;
using testing::tarDirectory;
using testing::tarEnd;
using testing::tarEntry;
using testing::TarExtraction;
using testing::tarFields;
using testing::TarFields;
using testing::tarFile;

class TarUnbounded : public TarExtraction {};

const std::string kZeroByte(1, '\0');

TEST_F(TarUnbounded, AZeroFirstByteIsAnEmptyArchive) {
    EXPECT_THAT(to_.extractUnbounded(kZeroByte), IsOk());
    EXPECT_EQ(to_.result(), "");
    EXPECT_EQ(to_.tree(), FileTree());
}

TEST_F(TarUnbounded, AnArchiveWithoutDirectoriesEmptiesTheDestination) {
    EXPECT_THAT(to_.extractUnbounded(tarFile("one", "1") + tarFile("two", "22") + tarEnd()),
                IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"one", fileInTree("1")}, {"two", fileInTree("22")}}));
    EXPECT_EQ(to_.result(), "");
}

TEST_F(TarUnbounded, TheFirstDirectoryBecomesTheDestination) {
    EXPECT_THAT(to_.extractUnbounded(tarFile("file") + tarDirectory("first") +
                                     tarDirectory("second") + tarEnd()),
                IsOk());
    EXPECT_EQ(to_.result(), to_.text() + "\\first");
}

TEST_F(TarUnbounded, TheDestinationKeepsTheArchivesSeparators) {
    fs::create_directory(to_.path() / "above");
    EXPECT_THAT(to_.extractUnbounded(tarDirectory("above/top/") + tarEnd()), IsOk());
    EXPECT_EQ(to_.result(), to_.text() + "\\above/top/");
    EXPECT_TRUE(fs::is_directory(to_.path() / "above" / "top"));
}

TEST_F(TarUnbounded, AnExistingDirectoryBecomesTheDestinationToo) {
    to_.write("root/kept", "content");
    EXPECT_THAT(to_.extractUnbounded(tarDirectory("root/") + tarEnd()), IsOk());
    EXPECT_EQ(to_.result(), to_.text() + "\\root/");
    EXPECT_EQ(to_.tree(), (FileTree{{"root", "directory"}, {"root/kept", fileInTree("content")}}));
}

TEST_F(TarUnbounded, FilesAreWrittenIntoTheDirectoriesCreatedBeforeThem) {
    EXPECT_THAT(to_.extractUnbounded(tarDirectory("a/") + tarDirectory("a/b/") +
                                     tarFile("a/b/file", "deep") + tarEnd()),
                IsOk());
    EXPECT_EQ(
        to_.tree(),
        (FileTree{{"a", "directory"}, {"a/b", "directory"}, {"a/b/file", fileInTree("deep")}}));
}

TEST_F(TarUnbounded, AnExistingFileIsReplaced) {
    to_.write("file", "something longer");
    EXPECT_THAT(to_.extractUnbounded(tarFile("file", "short") + tarEnd()), IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"file", fileInTree("short")}}));
}

TEST_F(TarUnbounded, OneZeroByteInPlaceOfAHeaderEndsTheArchive) {
    EXPECT_THAT(to_.extractUnbounded(tarDirectory("root") + tarFile("file", "x") + kZeroByte),
                IsOk());
    EXPECT_EQ(to_.result(), to_.text() + "\\root");
}

TEST_F(TarUnbounded, DataAfterOneZeroBlockIsIgnored) {
    const std::string zeroBlock(512, '\0');
    EXPECT_THAT(to_.extractUnbounded(tarFile("file", "x") + zeroBlock + tarFile("behind", "y") +
                                     "no header at all"),
                IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"file", fileInTree("x")}}));
}

TEST_F(TarUnbounded, OtherHeaderFieldsAreIgnored) {
    TarFields fields = tarFields("file");
    fields.linkName = "../../elsewhere";
    // Mode, owner and group; time; version, owner names and device; the rest of the block.
    fields.patches = {{100, std::string(24, '\xFF')},
                      {136, std::string(12, 'z')},
                      {263, std::string(82, '\x80')},
                      {500, std::string(12, '!')}};
    EXPECT_THAT(to_.extractUnbounded(tarEntry(fields, "content") + tarEnd()), IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"file", fileInTree("content")}}));
}

TEST_F(TarUnbounded, ADirectorysContentIsSkipped) {
    EXPECT_THAT(to_.extractUnbounded(tarEntry(tarFields("root", '5'), std::string(513, 'x')) +
                                     tarFile("root/file", "content") + tarEnd()),
                IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"root", "directory"}, {"root/file", fileInTree("content")}}));
}

TEST_F(TarUnbounded, AnArchiveWrittenByGnuTarIsExtracted) {
    EXPECT_THAT(to_.extractUnbounded(readTarData("accepted/simple.tar")), IsOk());
    EXPECT_EQ(listingOf(to_.tree()), readTarData("accepted/simple.listing"));
    EXPECT_EQ(to_.result(), to_.text() + "\\package/");
}

// Contents of about whole blocks; the file after them shows that the walk continues at the right
// offset.
class TarUnboundedContents : public TarExtraction,
                             public ::testing::WithParamInterface<std::size_t> {};

TEST_P(TarUnboundedContents, TheNextEntryStartsAtAWholeBlock) {
    const std::string content(GetParam(), 'c');
    const std::string archive = tarFile("file", content);
    ASSERT_EQ(archive.size() % 512, 0u);
    EXPECT_THAT(to_.extractUnbounded(archive + tarFile("next", "next") + tarEnd()), IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"file", fileInTree(content)}, {"next", fileInTree("next")}}));
}

INSTANTIATE_TEST_SUITE_P(Sizes, TarUnboundedContents,
                         ::testing::Values(0, 1, 511, 512, 513, 1023, 1024, 1025, 100000));

struct SizeField {
    std::string name;
    std::string field;
    std::size_t size;
};

class TarUnboundedSizes : public TarExtraction, public ::testing::WithParamInterface<SizeField> {};

TEST_P(TarUnboundedSizes, ASizeIsReadAsOctalTextUpToTheFirstOtherCharacter) {
    const std::string content(GetParam().size, 'c');
    EXPECT_THAT(
        to_.extractUnbounded(fileOfSize(GetParam().field, content) + tarFile("next") + tarEnd()),
        IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"file", fileInTree(content)}, {"next", fileInTree("")}}));
}

INSTANTIATE_TEST_SUITE_P(
    Fields, TarUnboundedSizes,
    ::testing::Values(SizeField{"Padded", "00000000017", 15}, SizeField{"Short", "17", 15},
                      SizeField{"AfterBlanks", "        17 ", 15},
                      SizeField{"TrailingBlank", "00000000017 ", 15},
                      SizeField{"TrailingNonOctalDigit", "179", 15},
                      SizeField{"TrailingText", "17bytes", 15},
                      SizeField{"TwelveDigits", "000000000017", 15}, SizeField{"Empty", "", 0},
                      SizeField{"Blanks", "            ", 0}, SizeField{"Text", "many", 0},
                      SizeField{"BinaryForm", std::string("\x80\0\0\0\0\0\0\0\0\0\0\5", 12), 0}),
    CaseName());

}  // namespace
}  // namespace VelmoraQuavin
