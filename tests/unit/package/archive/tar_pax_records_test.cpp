#include "package/archive/tar_pax_records.h"

#include <gtest/gtest.h>

#include <string>

#include "support/case_name.h"
#include "support/tar_archive.h"

namespace VelmoraQuavin::internal {
namespace {

using testing::CaseName;
using testing::paxRecord;
using namespace std::string_literals;

PaxRecords parsed(const std::string& text) {
    const std::optional<PaxRecords> records = parsePaxRecords(text);
    EXPECT_TRUE(records.has_value()) << text;
    return records.value_or(PaxRecords());
}

TEST(PaxRecordsTest, NoRecordsSetNothing) {
    const PaxRecords records = parsed("");
    EXPECT_FALSE(records.path.has_value());
    EXPECT_FALSE(records.size.has_value());
    EXPECT_FALSE(records.sparse);
}

TEST(PaxRecordsTest, APathIsRead) {
    EXPECT_EQ(parsed("18 path=some/file\n").path, "some/file");
}

TEST(PaxRecordsTest, TheLengthCountsItsOwnDigits) {
    EXPECT_EQ(parsed("9 path=a\n").path, "a");
    EXPECT_EQ(parsed("11 path=ab\n").path, "ab");
    EXPECT_EQ(parsed("99 path=" + std::string(90, 'n') + "\n").path, std::string(90, 'n'));
    EXPECT_EQ(parsed("101 path=" + std::string(91, 'n') + "\n").path, std::string(91, 'n'));
}

TEST(PaxRecordsTest, AValueMayContainEqualsSignsBlanksAndLineFeeds) {
    EXPECT_EQ(parsed("13 path=a=b=\n").path, "a=b=");
    EXPECT_EQ(parsed("14 path= a b \n").path, " a b ");
    EXPECT_EQ(parsed("20 path=a\n9 path=b\n\n").path, "a\n9 path=b\n");
}

TEST(PaxRecordsTest, ASizeIsReadAsADecimalNumber) {
    EXPECT_EQ(parsed("10 size=0\n").size, 0u);
    EXPECT_EQ(parsed("20 size=08589934592\n").size, 8589934592u);
    EXPECT_EQ(parsed("29 size=18446744073709551615\n").size, 18446744073709551615u);
}

TEST(PaxRecordsTest, OtherKeysAreSkipped) {
    const PaxRecords records = parsed(
        "20 atime=1234567.89\n" + paxRecord("mtime", "0") + paxRecord("uname", "me") +
        paxRecord("comment", "a text") + paxRecord("SCHILY.xattr.user.a", "\0\xFF\n"s) +
        paxRecord("linkpath", "elsewhere") + paxRecord("Path", "x") + paxRecord("pathx", "x") +
        paxRecord("pat", "x") + paxRecord("xpath", "x") + paxRecord("GNU.other", "x"));
    EXPECT_FALSE(records.path.has_value());
    EXPECT_FALSE(records.size.has_value());
    EXPECT_FALSE(records.sparse);
}

TEST(PaxRecordsTest, ARepeatedKeyReplacesItsValue) {
    const PaxRecords records = parsed(paxRecord("path", "one") + paxRecord("size", "1") +
                                      paxRecord("path", "two") + paxRecord("size", "2"));
    EXPECT_EQ(records.path, "two");
    EXPECT_EQ(records.size, 2u);
}

TEST(PaxRecordsTest, AnEmptyValueRemovesTheKey) {
    const PaxRecords records = parsed(paxRecord("path", "one") + paxRecord("size", "1") +
                                      paxRecord("path", "") + paxRecord("size", ""));
    EXPECT_FALSE(records.path.has_value());
    EXPECT_FALSE(records.size.has_value());
}

TEST(PaxRecordsTest, ARemovedKeyMayBeSetAgain) {
    EXPECT_EQ(parsed(paxRecord("path", "") + paxRecord("path", "back")).path, "back");
}

TEST(PaxRecordsTest, EverySparseKeyMarksASparseFile) {
    for (const std::string key :
         {"GNU.sparse.major", "GNU.sparse.map", "GNU.sparse.name", "GNU.sparse.numblocks"}) {
        EXPECT_TRUE(parsed(paxRecord(key, "1")).sparse) << key;
    }
}

struct Malformed {
    std::string name;
    std::string text;
};

class MalformedPaxRecords : public ::testing::TestWithParam<Malformed> {};

TEST_P(MalformedPaxRecords, ParsingFails) {
    EXPECT_FALSE(parsePaxRecords(GetParam().text).has_value());
    // Also after a valid record.
    EXPECT_FALSE(parsePaxRecords(paxRecord("mtime", "0") + GetParam().text).has_value());
}

INSTANTIATE_TEST_SUITE_P(
    Texts, MalformedPaxRecords,
    ::testing::Values(
        Malformed{"NoLength", " path=a\n"}, Malformed{"NoBlank", "9"},
        Malformed{"NoBlankInText", "9path=aa\n"}, Malformed{"NoDigits", "x path=a\n"},
        Malformed{"DigitsAndText", "9x path=a\n"}, Malformed{"Hexadecimal", "0xB path=a\n"},
        Malformed{"Negative", "-9 path=a\n"}, Malformed{"Signed", "+9 path=a\n"},
        Malformed{"BlankFirst", " 10 path=a\n"}, Malformed{"LengthZero", "0 path=a\n"},
        Malformed{"LengthOfItself", "2 path=a\n"}, Malformed{"LengthOfTheLineFeedAlone", "3 \n"},
        Malformed{"EndsAtTheBlank", "1 \n"}, Malformed{"TooShort", "8 path=a\n"},
        Malformed{"TooLong", "11 path=a\n"}, Malformed{"FarTooLong", "999999999 path=a\n"},
        Malformed{"LongerThanNumbers", "99999999999999999999999 path=a\n"},
        Malformed{"TwoToThe64Plus9", "18446744073709551625 path=a\n"},
        Malformed{"NoLineFeed", "8 path=a"}, Malformed{"OtherLastCharacter", "9 path=a\0"s},
        Malformed{"NoEqualsSign", "9 path a\n"}, Malformed{"NoKey", "4 \n\n"},
        Malformed{"TrailingZeroBytes", paxRecord("mtime", "1") + std::string(3, '\0')},
        Malformed{"TrailingLineFeed", paxRecord("mtime", "1") + "\n"},
        Malformed{"ZeroByteInPath", paxRecord("path", "a\0b"s)},
        Malformed{"ZeroByteAtThePathsEnd", paxRecord("path", "a\0"s)},
        Malformed{"PathOfAZeroByte", paxRecord("path", "\0"s)},
        Malformed{"SizeNegative", paxRecord("size", "-1")},
        Malformed{"SizeSigned", paxRecord("size", "+1")},
        Malformed{"SizeText", paxRecord("size", "many")},
        Malformed{"SizeHexadecimal", paxRecord("size", "0x10")},
        Malformed{"SizeFraction", paxRecord("size", "1.5")},
        Malformed{"SizeWithBlank", paxRecord("size", "1 ")},
        Malformed{"SizeAfterBlank", paxRecord("size", " 1")},
        Malformed{"SizeWithZeroByte", paxRecord("size", "1\0"s)},
        Malformed{"SizeOfTwoToThe64", paxRecord("size", "18446744073709551616")}),
    CaseName());

}  // namespace
}  // namespace VelmoraQuavin::internal
