// Truncated and malformed archives. Each is refused before anything is written.

#include <gtest/gtest.h>

#include <string>

#include "support/case_name.h"
#include "unit/package/archive/tar_fixture.h"

namespace VelmoraQuavin {
namespace {

using testing::CaseName;
using testing::ExactBytes;
using testing::fileOfSize;
using testing::FileTree;
using testing::gnuLongName;
using testing::IsOk;
using testing::IsStatus;
using testing::octalChecksum;
using testing::paxHeader;
using testing::paxRecord;
using testing::tarChecksum;
using testing::tarDirectory;
using testing::tarEnd;
using testing::tarEntry;
using testing::TarExtraction;
using testing::tarFields;
using testing::TarFields;
using testing::tarFile;
using testing::tarHeader;
using namespace std::string_literals;

class TarRefusal : public TarExtraction {};

TEST_F(TarRefusal, ANullPointerIsRefused) {
    Filepath destination(to_.text());
    EXPECT_THAT(FileUtils::extractTarball(nullptr, 0, destination),
                IsStatus(INVALID_ARGUMENTS, "The archive must not be null"));
    EXPECT_THAT(FileUtils::extractTarball(nullptr, 1024, destination),
                IsStatus(INVALID_ARGUMENTS, "The archive must not be null"));
    EXPECT_EQ(String(destination.c_str()), String(to_.text()));
}

TEST_F(TarRefusal, EmptyInputIsRefused) {
    expectRefused("", INVALID_ARGUMENTS,
                  "Archive entry 1: the archive is cut off: there is no end mark");
}

TEST_F(TarRefusal, AMissingEndMarkIsRefused) {
    expectRefused(tarFile("file", "content"), INVALID_ARGUMENTS,
                  "Archive entry 2: the archive is cut off: there is no end mark");
}

TEST_F(TarRefusal, ATruncatedHeaderIsRefused) {
    expectRefused(tarFile("one", "1") + tarFile("two").substr(0, 511), INVALID_ARGUMENTS,
                  "Archive entry 2: the archive is cut off in the header");
}

TEST_F(TarRefusal, TruncatedContentIsRefused) {
    expectRefused(tarFile("one", "1") + tarFile("two", std::string(100, 'x')).substr(0, 512 + 99),
                  INVALID_ARGUMENTS,
                  "Archive entry 2 (\"two\"): it needs 100 bytes of content, in whole blocks of "
                  "512, and 99 are left in the archive");
}

TEST_F(TarRefusal, MissingPaddingIsRefused) {
    expectRefused(tarFile("one", std::string(513, 'x')).substr(0, 512 + 1023), INVALID_ARGUMENTS,
                  "Archive entry 1 (\"one\"): it needs 513 bytes of content, in whole blocks of "
                  "512, and 1023 are left in the archive");
}

// Every kind of header, cut at every position.
TEST_F(TarRefusal, AnArchiveCutAnywhereIsRefused) {
    const std::string entries = tarDirectory("root/") + tarFile("root/file", "content") +
                                gnuLongName("root/long name") + tarFile("short", "more") +
                                paxHeader(paxRecord("path", "root/pax name")) + tarFile("pax");
    for (std::size_t length = 0; length <= entries.size(); ++length) {
        const ExactBytes bytes(entries.substr(0, length));
        Filepath destination(to_.text());
        const QuavinStatus status =
            FileUtils::extractTarball(bytes.data(), bytes.size(), destination);
        ASSERT_EQ(status.getCode(), INVALID_ARGUMENTS) << length;
        ASSERT_EQ(String(destination.c_str()), String(to_.text()));
    }
    EXPECT_EQ(to_.tree(), FileTree());
    // One byte of the end mark is enough.
    EXPECT_THAT(to_.extract(entries + '\0'), IsOk());
    EXPECT_EQ(to_.tree().size(), 4u);
}

TEST_F(TarRefusal, EveryChangedHeaderByteIsRefused) {
    const std::string good = tarFile("file", "content") + tarEnd();
    for (std::size_t place = 0; place < 512; ++place) {
        std::string changed = good;
        changed[place] = static_cast<char>(changed[place] + 1);
        if (place == 154 || place == 155) {
            continue;  // after the six digits of the checksum
        }
        expectRefused(changed, TAR_CHECKSUM_MISMATCH,
                      "Archive entry 1: the header's checksum is wrong");
    }
}

TEST_F(TarRefusal, AWrongChecksumAfterGoodEntriesIsRefused) {
    TarFields fields = tarFields("bad");
    fields.checksum = octalChecksum(tarChecksum(tarHeader(fields)) + 1);
    expectRefused(tarDirectory("root") + tarFile("root/file", "x") + tarEntry(fields) + tarEnd(),
                  TAR_CHECKSUM_MISMATCH, "Archive entry 3: the header's checksum is wrong");
}

TEST_F(TarRefusal, AWrongChecksumOfAnExtensionIsRefused) {
    std::string header = gnuLongName("long");
    header[148] = '7';
    expectRefused(header + tarFile("short") + tarEnd(), TAR_CHECKSUM_MISMATCH,
                  "Archive entry 1: the header's checksum is wrong");
}

TEST_F(TarRefusal, AFileNamedLikeADirectoryMustBeEmpty) {
    expectRefused(tarFile("folder/", "x") + tarEnd(), INVALID_ARGUMENTS,
                  "Archive entry 1 (\"folder/\"): it is named like a directory but has content");
}

TEST_F(TarRefusal, AFileMustNotNameTheDestination) {
    for (const std::string name : {".", ".\\."}) {
        expectRefused(tarFile("good", "x") + tarFile(name, "x") + tarEnd(), INVALID_ARGUMENTS,
                      "Archive entry \"" + name + "\": its name is that of a directory");
    }
}

struct RefusedSize {
    std::string name;
    std::string field;
};

class TarMalformedSizes : public TarExtraction,
                          public ::testing::WithParamInterface<RefusedSize> {};

TEST_P(TarMalformedSizes, TheArchiveIsRefused) {
    expectRefused(tarFile("good", "x") + fileOfSize(GetParam().field, "content") + tarEnd(),
                  INVALID_ARGUMENTS, "Archive entry 2 (\"file\"): its size is not a number");
}

INSTANTIATE_TEST_SUITE_P(
    Fields, TarMalformedSizes,
    ::testing::Values(RefusedSize{"Tabs", std::string(12, '\t')}, RefusedSize{"Text", "many"},
                      RefusedSize{"Negative", "-0000000007"}, RefusedSize{"Signed", "+0000000007"},
                      RefusedSize{"NonOctalDigit", "8"},
                      RefusedSize{"TrailingNonOctalDigit", "00000000178"},
                      RefusedSize{"TrailingText", "7bytes"}, RefusedSize{"Hexadecimal", "0x7"},
                      RefusedSize{"ZeroByteBefore", "\0"s + "7"},
                      RefusedSize{"BinaryNegative", std::string(11, '\xFF') + "\xF9"},
                      RefusedSize{"BinaryMostNegative", "\xC0" + std::string(11, '\0')},
                      RefusedSize{"BinaryOfTwoToThe64", "\x80\0\0\1\0\0\0\0\0\0\0\0"s},
                      RefusedSize{"BinaryWrapsToSeven", "\x80\0\0\1\0\0\0\0\0\0\0\7"s},
                      RefusedSize{"BinaryTopBits", "\x81\0\0\0\0\0\0\0\0\0\0\7"s}),
    CaseName());

struct LargeSize {
    std::string name;
    std::string field;
    std::string number;
};

class TarLargeSizes : public TarExtraction, public ::testing::WithParamInterface<LargeSize> {};

TEST_P(TarLargeSizes, TheArchiveIsRefused) {
    // One block of content and two of the end mark are left.
    expectRefused(tarFile("good", "x") + fileOfSize(GetParam().field, "content") + tarEnd(),
                  INVALID_ARGUMENTS,
                  "Archive entry 2 (\"file\"): it needs " + GetParam().number +
                      " bytes of content, in whole blocks of 512, and 1536 are left in the "
                      "archive");
}

INSTANTIATE_TEST_SUITE_P(
    Fields, TarLargeSizes,
    ::testing::Values(
        LargeSize{"OneTooMany", "00000003001", "1537"},
        LargeSize{"EightGibibytesLessOne", "77777777777", "8589934591"},
        LargeSize{"TwelveDigits", "777777777777", "68719476735"},
        LargeSize{"BinaryOneTooMany", "\x80\0\0\0\0\0\0\0\0\0\6\1"s, "1537"},
        LargeSize{"BinaryEightGibibytes", "\x80\0\0\0\0\0\0\2\0\0\0\0"s, "8589934592"},
        LargeSize{"BinaryTwoToThe63", "\x80\0\0\0\x80\0\0\0\0\0\0\0"s, "9223372036854775808"},
        // Rounding it up to whole blocks must not wrap to zero.
        LargeSize{"BinaryLargest", "\x80\0\0\0"s + std::string(8, '\xFF'), "18446744073709551615"}),
    CaseName());

}  // namespace
}  // namespace VelmoraQuavin
