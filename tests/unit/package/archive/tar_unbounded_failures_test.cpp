// What the overload without a length does not extract.

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "unit/package/archive/tar_fixture.h"

namespace VelmoraQuavin {
namespace {

namespace fs = std::filesystem;
using testing::fileInTree;
using testing::FileTree;
using testing::IsOk;
using testing::IsStatus;
using testing::octalChecksum;
using testing::tarChecksum;
using testing::tarDirectory;
using testing::tarEnd;
using testing::tarEntry;
using testing::TarExtraction;
using testing::tarFields;
using testing::TarFields;
using testing::tarFile;
using testing::tarHeader;

class TarUnboundedFailures : public TarExtraction {
protected:
    // Extracts `bad` between good entries and expects that only the entries before it are written
    // and that the destination's value stays.
    void expectStopsAt(const std::string& bad, STATUS_CODE code) {
        EXPECT_THAT(to_.extractUnbounded(between(bad)), IsStatus(code, ""));
        expectOnlyTheEntriesBefore();
    }
    void expectThrowsAt(const std::string& bad) {
        try {
            to_.extractUnbounded(between(bad));
            ADD_FAILURE() << "nothing was thrown";
        } catch (const std::range_error& error) {
            EXPECT_STREQ(error.what(), "bad conversion");
        }
        expectOnlyTheEntriesBefore();
    }

private:
    static std::string between(const std::string& bad) {
        return tarDirectory("before/") + tarFile("before/file", "kept") + bad +
               tarFile("behind", "lost") + tarEnd();
    }
    void expectOnlyTheEntriesBefore() const {
        EXPECT_EQ(to_.tree(),
                  (FileTree{{"before", "directory"}, {"before/file", fileInTree("kept")}}));
        EXPECT_EQ(to_.result(), to_.text());
    }
};

TEST_F(TarUnboundedFailures, ANullPointerIsRefusedWithoutAMessage) {
    Filepath destination("C:\\models");
    EXPECT_THAT(FileUtils::extractTarball(nullptr, destination), IsStatus(INVALID_ARGUMENTS, ""));
    EXPECT_STREQ(String(destination.c_str()).str().c_str(), "C:\\models");
}

TEST_F(TarUnboundedFailures, AChecksumOneTooSmallStopsExtraction) {
    TarFields fields = tarFields("bad");
    fields.checksum = octalChecksum(tarChecksum(tarHeader(fields, 4)) - 1);
    expectStopsAt(tarEntry(fields, "lost"), TAR_CHECKSUM_MISMATCH);
}

TEST_F(TarUnboundedFailures, AChecksumOneTooLargeStopsExtraction) {
    TarFields fields = tarFields("bad");
    fields.checksum = octalChecksum(tarChecksum(tarHeader(fields, 4)) + 1);
    expectStopsAt(tarEntry(fields, "lost"), TAR_CHECKSUM_MISMATCH);
}

TEST_F(TarUnboundedFailures, ADirectorysWrongChecksumStopsExtraction) {
    TarFields fields = tarFields("bad", '5');
    fields.checksum = octalChecksum(tarChecksum(tarHeader(fields)) + 1);
    expectStopsAt(tarEntry(fields), TAR_CHECKSUM_MISMATCH);
}

TEST_F(TarUnboundedFailures, AnEmptyChecksumStopsExtraction) {
    TarFields fields = tarFields("bad");
    fields.checksum = "";
    expectStopsAt(tarEntry(fields, "lost"), TAR_CHECKSUM_MISMATCH);
}

TEST_F(TarUnboundedFailures, AChecksumPaddedWithBlanksStopsExtraction) {
    TarFields fields = tarFields("bad");
    std::string digits = octalChecksum(tarChecksum(tarHeader(fields, 4)));
    ASSERT_EQ(digits.substr(0, 2), "00");
    fields.checksum = digits.replace(0, 2, "  ");
    expectStopsAt(tarEntry(fields, "lost"), TAR_CHECKSUM_MISMATCH);
}

// Only the first six digits are compared.
TEST_F(TarUnboundedFailures, AChecksumOfSevenDigitsStopsExtraction) {
    TarFields fields = tarFields("bad");
    fields.checksum = "0" + octalChecksum(tarChecksum(tarHeader(fields, 4)));
    expectStopsAt(tarEntry(fields, "lost"), TAR_CHECKSUM_MISMATCH);
}

TEST_F(TarUnboundedFailures, AChecksumOfSignedBytesStopsExtraction) {
    TarFields fields = tarFields("bäd");
    // As signed bytes, each of the two bytes of "ä" counts 256 less.
    fields.checksum = octalChecksum(tarChecksum(tarHeader(fields, 4)) - 512);
    expectStopsAt(tarEntry(fields, "lost"), TAR_CHECKSUM_MISMATCH);
}

TEST_F(TarUnboundedFailures, TheChecksumsLastTwoCharactersAreIgnored) {
    for (const std::string ending : {"", " ", "  ", "77", "xx", "\xFF\xFF"}) {
        TarFields fields = tarFields("file");
        fields.checksum = octalChecksum(tarChecksum(tarHeader(fields, 4))) + ending;
        EXPECT_THAT(to_.extractUnbounded(tarEntry(fields, "good") + tarEnd()), IsOk());
        EXPECT_EQ(to_.tree(), (FileTree{{"file", fileInTree("good")}}));
        fs::remove(to_.path() / "file");
        to_.setDestination(to_.text());
    }
}

TEST_F(TarUnboundedFailures, TheChecksumIsCheckedBeforeTheType) {
    TarFields fields = tarFields("bad", '2');
    fields.checksum = "777777";
    expectStopsAt(tarEntry(fields), TAR_CHECKSUM_MISMATCH);
}

class TarUnboundedTypes : public TarUnboundedFailures,
                          public ::testing::WithParamInterface<char> {};

TEST_P(TarUnboundedTypes, TypesOtherThanFileAndDirectoryStopExtraction) {
    TarFields fields = tarFields("bad", GetParam());
    fields.linkName = "before/file";
    expectStopsAt(tarEntry(fields), TAR_UNSUPPORTED_ENTRY);
}

// An old-style file, links, devices, a fifo, a contiguous file, the extension headers of pax and
// GNU tar, and others.
INSTANTIATE_TEST_SUITE_P(Types, TarUnboundedTypes,
                         ::testing::Values('\0', '1', '2', '3', '4', '6', '7', 'x', 'g', 'L', 'K',
                                           'S', 'D', 'V', 'A', ' ', '8', '\xFF'));

TEST_F(TarUnboundedFailures, AFileNameThatIsNotUtf8Throws) {
    expectThrowsAt(
        tarFile("b\xFF"
                "d",
                "lost"));
}

TEST_F(TarUnboundedFailures, ADirectoryNameThatIsNotUtf8Throws) {
    expectThrowsAt(tarDirectory("bad\xC3/"));
}

TEST_F(TarUnboundedFailures, TheChecksumAndTheTypeAreCheckedBeforeTheName) {
    TarFields fields = tarFields("b\xFF", '2');
    expectStopsAt(tarEntry(fields), TAR_UNSUPPORTED_ENTRY);
    fields.checksum = "000000";
    expectStopsAt(tarEntry(fields), TAR_CHECKSUM_MISMATCH);
}

}  // namespace
}  // namespace VelmoraQuavin
