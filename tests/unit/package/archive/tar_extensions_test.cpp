// Extension headers, for the entry that follows or for all entries.

#include <gtest/gtest.h>

#include <string>

#include "unit/package/archive/tar_fixture.h"

namespace VelmoraQuavin {
namespace {

using testing::fileInTree;
using testing::fileOfSize;
using testing::FileTree;
using testing::gnuLongName;
using testing::IsOk;
using testing::kDirectoryInTree;
using testing::paxHeader;
using testing::paxRecord;
using testing::TarDestination;
using testing::tarEnd;
using testing::tarEntry;
using testing::TarExtraction;
using testing::tarFields;
using testing::TarFields;
using testing::tarFile;
using namespace std::string_literals;

constexpr std::string_view kExtensionTypes = "xgLK";

const std::string kBadExtension =
    "Archive entry 1: a header that extends it is cut off, longer than 1 MiB, or of a size that is "
    "not a number";

// An extension header of this type and content; its name does not matter.
std::string extension(char type, std::string_view content) {
    return paxHeader(content, type);
}

class TarExtensions : public TarExtraction {
protected:
    // Extracts one file and returns its path.
    std::string nameOf(const std::string& entry) {
        EXPECT_THAT(to_.extract(entry + tarEnd()), IsOk());
        std::string name;
        for (const auto& [path, what] : to_.tree()) {
            if (what != kDirectoryInTree) {
                EXPECT_EQ(name, "");
                name = path;
            }
        }
        return name;
    }
    void expectMalformedRecords(const std::string& records) {
        expectRefused(tarFile("good") + paxHeader(records) + tarFile("file", "content") + tarEnd(),
                      INVALID_ARGUMENTS, "Archive entry 2: its pax records are malformed");
    }
};

TEST_F(TarExtensions, APaxPathReplacesTheName) {
    EXPECT_EQ(nameOf(paxHeader(paxRecord("path", "folder/größe")) + tarFile("file")),
              "folder/größe");
}

TEST_F(TarExtensions, APaxPathReplacesThePrefixToo) {
    TarFields fields = tarFields("file");
    fields.prefix = "folder";
    EXPECT_EQ(nameOf(paxHeader(paxRecord("path", "other")) + tarEntry(fields)), "other");
}

TEST_F(TarExtensions, AGnuLongNameReplacesTheName) {
    const std::string name = std::string(200, 'a') + "/" + std::string(200, 'b');
    EXPECT_EQ(nameOf(gnuLongName(name) + tarFile(name.substr(0, 99))), name);
}

TEST_F(TarExtensions, AGnuLongNameEndsAtAZeroByteOrAtTheEndOfItsContent) {
    EXPECT_EQ(nameOf(extension('L', "long\0behind"s) + tarFile("short")), "long");
    TarDestination other;
    EXPECT_THAT(other.extract(extension('L', "long") + tarFile("short") + tarEnd()), IsOk());
    EXPECT_EQ(other.tree(), (FileTree{{"long", fileInTree("")}}));
}

TEST_F(TarExtensions, APaxPathOverridesAGnuLongNameInEitherOrder) {
    const std::string pax = paxHeader(paxRecord("path", "pax"));
    EXPECT_EQ(nameOf(pax + gnuLongName("gnu") + tarFile("header")), "pax");
    TarDestination other;
    EXPECT_THAT(other.extract(gnuLongName("gnu") + pax + tarFile("header") + tarEnd()), IsOk());
    EXPECT_EQ(other.tree(), (FileTree{{"pax", fileInTree("")}}));
}

TEST_F(TarExtensions, ALongLinkTargetIsIgnored) {
    const std::string target = extension('K', "elsewhere\0"s);
    EXPECT_THAT(to_.extract(target + tarFile("1") + target + gnuLongName("2") + tarFile("no") +
                            gnuLongName("3") + target + tarFile("no") + tarEnd()),
                IsOk());
    EXPECT_EQ(to_.tree(),
              (FileTree{{"1", fileInTree("")}, {"2", fileInTree("")}, {"3", fileInTree("")}}));
}

TEST_F(TarExtensions, AnExtensionAppliesToOneEntryOnly) {
    EXPECT_THAT(to_.extract(gnuLongName("gnu") + tarFile("1") +
                            paxHeader(paxRecord("path", "pax") + paxRecord("size", "3")) +
                            tarFile("2", "two") + tarFile("3", "three") + tarEnd()),
                IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"gnu", fileInTree("")},
                                    {"pax", fileInTree("two")},
                                    {"3", fileInTree("three")}}));
}

TEST_F(TarExtensions, TheLastOfSeveralWins) {
    EXPECT_THAT(to_.extract(gnuLongName("no") + gnuLongName("gnu") + tarFile("1") +
                            paxHeader(paxRecord("path", "no")) +
                            paxHeader(paxRecord("path", "no") + paxRecord("path", "pax")) +
                            tarFile("2") + tarEnd()),
                IsOk());
    EXPECT_EQ(to_.tree(), (FileTree{{"gnu", fileInTree("")}, {"pax", fileInTree("")}}));
}

TEST_F(TarExtensions, AnEmptyPaxPathRemovesAnEarlierOne) {
    EXPECT_EQ(
        nameOf(paxHeader(paxRecord("path", "pax") + paxRecord("path", "")) + tarFile("header")),
        "header");
}

TEST_F(TarExtensions, APaxSizeReplacesTheSize) {
    for (const std::string size : {"00000000000", "77777777777", "no size"}) {
        to_.setDestination(to_.text());
        EXPECT_THAT(
            to_.extract(paxHeader(paxRecord("size", "513")) +
                        fileOfSize(size, std::string(513, 'x')) + tarFile("next") + tarEnd()),
            IsOk());
        EXPECT_EQ(to_.tree(), (FileTree{{"file", fileInTree(std::string(513, 'x'))},
                                        {"next", fileInTree("")}}));
    }
}

TEST_F(TarExtensions, APaxSizeBeyondTheArchiveIsRefused) {
    expectRefused(paxHeader(paxRecord("size", "8589934592")) + tarFile("file") + tarEnd(),
                  INVALID_ARGUMENTS,
                  "Archive entry 1 (\"file\"): it needs 8589934592 bytes of content, in whole "
                  "blocks of 512, and 1024 are left in the archive");
    expectRefused(paxHeader(paxRecord("size", "18446744073709551615")) + tarFile("file") + tarEnd(),
                  INVALID_ARGUMENTS, ::testing::HasSubstr("18446744073709551615 bytes"));
}

TEST_F(TarExtensions, MalformedPaxRecordsAreRefused) {
    expectMalformedRecords("8 path=a\n9 path=b\n");
    expectMalformedRecords("9 path=a\n\n");
    expectMalformedRecords(paxRecord("path", "a\0b"s));
    expectMalformedRecords(paxRecord("size", "-1"));
    expectMalformedRecords(paxRecord("path", "a") + std::string(100, '\0'));
}

TEST_F(TarExtensions, AnExtensionIsLimitedToOneMebibyte) {
    constexpr std::size_t kLimit = 1048576;
    // The other 17 bytes are the seven digits of the length, " comment=" and a line feed.
    std::string records = paxRecord("comment", std::string(kLimit - 17, 'x'));
    ASSERT_EQ(records.size(), kLimit);
    EXPECT_EQ(nameOf(paxHeader(records) + extension('g', records) + tarFile("file")), "file");
    records = paxRecord("comment", std::string(kLimit - 16, 'x'));
    for (const char type : kExtensionTypes) {
        expectRefused(extension(type, records) + tarFile("file") + tarEnd(), INVALID_ARGUMENTS,
                      kBadExtension);
    }
}

TEST_F(TarExtensions, ATruncatedExtensionIsRefused) {
    for (const char type : kExtensionTypes) {
        const std::string whole = extension(type, paxRecord("comment", std::string(600, 'x')));
        expectRefused(whole.substr(0, 512), INVALID_ARGUMENTS, kBadExtension);
        expectRefused(whole.substr(0, 512 + 600), INVALID_ARGUMENTS, kBadExtension);
        expectRefused(whole.substr(0, whole.size() - 1), INVALID_ARGUMENTS, kBadExtension);
    }
}

TEST_F(TarExtensions, AnExtensionWithAMalformedSizeIsRefused) {
    for (const char type : kExtensionTypes) {
        TarFields fields = tarFields("x", type);
        fields.size = "-1";
        expectRefused(tarEntry(fields) + tarFile("file") + tarEnd(), INVALID_ARGUMENTS,
                      kBadExtension);
    }
}

TEST_F(TarExtensions, AnExtensionWithoutAnEntryIsRefused) {
    for (const std::string& header :
         {gnuLongName("long"), paxHeader(paxRecord("path", "pax")), extension('K', "target")}) {
        expectRefused(tarFile("good") + header + tarEnd(), INVALID_ARGUMENTS,
                      "Archive entry 2: the archive ends after an extension header, before the "
                      "entry it describes");
    }
}

}  // namespace
}  // namespace VelmoraQuavin
