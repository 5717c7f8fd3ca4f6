// How the overload without a length turns names into paths, and which directories it leaves out.

#include <gtest/gtest.h>

#include <string>

#include "support/system.h"
#include "unit/package/archive/tar_fixture.h"

namespace VelmoraQuavin {
namespace {

namespace fs = std::filesystem;
using testing::fileInTree;
using testing::FileTree;
using testing::IsOk;
using testing::kGnuMagic;
using testing::prefixedFile;
using testing::tarDirectory;
using testing::tarEnd;
using testing::tarEntry;
using testing::TarExtraction;
using testing::tarFields;
using testing::TarFields;
using testing::tarFile;

class TarUnboundedNames : public TarExtraction {
protected:
    // Extracts a file with the prefix "folder" and returns the resulting tree.
    FileTree extractWithMagic(const std::string& magic) {
        EXPECT_THAT(
            to_.extractUnbounded(tarDirectory("folder") + prefixedFile("folder", magic) + tarEnd()),
            IsOk());
        return to_.tree();
    }
};

TEST_F(TarUnboundedNames, AUstarPrefixPrecedesTheName) {
    EXPECT_EQ(extractWithMagic(std::string("ustar\0", 6)),
              (FileTree{{"folder", "directory"}, {"folder/file", fileInTree("content")}}));
}

TEST_F(TarUnboundedNames, TheVersionAfterTheMagicIsIgnored) {
    EXPECT_EQ(extractWithMagic(std::string("ustar\0xy", 8)),
              (FileTree{{"folder", "directory"}, {"folder/file", fileInTree("content")}}));
}

TEST_F(TarUnboundedNames, GnuTarsMagicMeansNoPrefix) {
    EXPECT_EQ(extractWithMagic(kGnuMagic),
              (FileTree{{"folder", "directory"}, {"file", fileInTree("content")}}));
}

TEST_F(TarUnboundedNames, AMissingMagicMeansNoPrefix) {
    EXPECT_EQ(extractWithMagic(""),
              (FileTree{{"folder", "directory"}, {"file", fileInTree("content")}}));
}

TEST_F(TarUnboundedNames, APrefixMayFillItsField) {
    const std::string outer(77, 'o');
    const std::string inner(77, 'i');
    const std::string prefix = outer + "/" + inner;
    ASSERT_EQ(prefix.size(), 155u);
    EXPECT_THAT(to_.extractUnbounded(tarDirectory(outer) + prefixedFile(outer, "ustar") +
                                     prefixedFile(prefix, "ustar") + tarEnd()),
                IsOk());
    EXPECT_EQ(to_.tree(),
              (FileTree{{outer, "directory"}, {outer + "/file", fileInTree("content")}}));
    fs::create_directory(to_.path() / outer / inner);
    to_.setDestination(to_.text());
    EXPECT_THAT(to_.extractUnbounded(prefixedFile(prefix, "ustar") + tarEnd()), IsOk());
    EXPECT_EQ(to_.tree().at(prefix + "/file"), fileInTree("content"));
}

TEST_F(TarUnboundedNames, ADirectoryMayHaveAPrefix) {
    TarFields fields = tarFields("inner/", '5');
    fields.prefix = "outer";
    EXPECT_THAT(to_.extractUnbounded(tarEntry(fields) + tarEnd()), IsOk());
    EXPECT_EQ(to_.result(), to_.text() + "\\outer/inner/");
}

TEST_F(TarUnboundedNames, NinetyNineCharactersFitTheField) {
    const std::string name(99, 'n');
    EXPECT_THAT(to_.extractUnbounded(tarFile(name, "content") + tarEnd()), IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{name, fileInTree("content")}}));
}

TEST_F(TarUnboundedNames, AHundredCharactersRunOnIntoTheMode) {
    const std::string name(100, 'n');
    EXPECT_THAT(to_.extractUnbounded(tarFile(name, "content") + tarEnd()), IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{name + "0000644", fileInTree("content")}}));
}

TEST_F(TarUnboundedNames, AHundredCharactersRunOnThroughAFullModeIntoTheOwner) {
    TarFields fields = tarFields(std::string(100, 'n'));
    fields.mode = "00000644";
    EXPECT_THAT(to_.extractUnbounded(tarEntry(fields, "content") + tarEnd()), IsOk());
    EXPECT_EQ(to_.tree(),
              (FileTree{{fields.name + "00000644" + "0000000", fileInTree("content")}}));
}

TEST_F(TarUnboundedNames, BackslashesAreSeparatorsToo) {
    EXPECT_THAT(to_.extractUnbounded(tarDirectory("folder\\") + tarFile("folder\\file", "content") +
                                     tarEnd()),
                IsOk());
    EXPECT_EQ(to_.tree(),
              (FileTree{{"folder", "directory"}, {"folder/file", fileInTree("content")}}));
}

TEST_F(TarUnboundedNames, NamesThatLeadOutOfTheDestinationAreTrusted) {
    EXPECT_THAT(to_.extractUnbounded(tarFile("../beside", "content") + tarEnd()), IsOk());
    EXPECT_EQ(to_.all().at("level/beside"), fileInTree("content"));
}

TEST_F(TarUnboundedNames, ADirectoryWhoseParentIsMissingIsNotCreated) {
    EXPECT_THAT(to_.extractUnbounded(tarDirectory("missing/child/") +
                                     tarFile("missing/child/file", "lost") +
                                     tarFile("next", "next") + tarEnd()),
                IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"next", fileInTree("next")}}));
    EXPECT_EQ(to_.result(), to_.text() + "\\missing/child/");
}

class TarUnboundedWhiteSpace : public TarExtraction, public ::testing::WithParamInterface<char> {};

TEST_P(TarUnboundedWhiteSpace, ADirectoryWithWhiteSpaceInItsNameIsNotCreated) {
    const std::string name = std::string("my") + GetParam() + "model";
    EXPECT_THAT(to_.extractUnbounded(tarDirectory(name + "/") + tarFile(name + "/file", "lost") +
                                     tarFile("next", "next") + tarEnd()),
                IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"next", fileInTree("next")}}));
    EXPECT_EQ(to_.result(), to_.text() + "\\" + name + "/");
}

TEST_P(TarUnboundedWhiteSpace, NoDirectoryIsCreatedInADestinationWithWhiteSpace) {
    const std::string name = std::string("my") + GetParam() + "models";
    fs::create_directory(to_.path() / name);
    to_.setDestination(to_.text() + "\\" + name);
    EXPECT_THAT(to_.extractUnbounded(tarDirectory("root/") + tarFile("root/file", "lost") +
                                     tarFile("next", "next") + tarEnd()),
                IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{name, "directory"}, {name + "/next", fileInTree("next")}}));
    EXPECT_EQ(to_.result(), to_.text() + "\\" + name + "\\root/");
}

TEST_P(TarUnboundedWhiteSpace, FilesWithWhiteSpaceInTheirPathsAreWritten) {
    const std::string name = std::string("my") + GetParam() + "model";
    to_.write(name + "/before", "kept");
    EXPECT_THAT(
        to_.extractUnbounded(tarDirectory(name) + tarFile(name + "/" + name, "content") + tarEnd()),
        IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{name, "directory"},
                                    {name + "/before", fileInTree("kept")},
                                    {name + "/" + name, fileInTree("content")}}));
}

INSTANTIATE_TEST_SUITE_P(Characters, TarUnboundedWhiteSpace,
                         ::testing::ValuesIn(testing::whiteSpaceOfNames()));

TEST_F(TarUnboundedNames, OnlyTheCLibrarysWhiteSpaceCounts) {
    // A no-break space, a next line, an ideographic space, a zero-width space, and a letter that
    // contains the byte A0. The system's narrow interface may read their bytes as other letters.
    std::size_t made = 0;
    for (const std::string name : {"a\u00A0b", "a\u0085b", "a\u3000b", "a\u200Bb", "a\u00E0b"}) {
        to_.setDestination(to_.text());
        EXPECT_THAT(to_.extractUnbounded(tarDirectory(name) + tarEnd()), IsOk());
        EXPECT_EQ(to_.tree().size(), ++made) << name;
        if (testing::narrowPathsAreUtf8()) {
            EXPECT_EQ(to_.tree().count(name), 1u) << name;
        }
    }
}

}  // namespace
}  // namespace VelmoraQuavin
