#include "core/text_tools.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "support/case_name.h"

namespace VelmoraQuavin::internal {
namespace {

using ::testing::StrEq;
using ::testing::ThrowsMessage;

TEST(UntilZeroByteTest, StopsAtTheFirstZeroByte) {
    EXPECT_EQ(untilZeroByte({"ab\0cd\0e", 7}), "ab");
    EXPECT_EQ(untilZeroByte({"\0ab", 3}), "");
    EXPECT_EQ(untilZeroByte("ab"), "ab");
    EXPECT_EQ(untilZeroByte(""), "");
}

TEST(Utf16ToUtf8Test, ConvertsEveryLengthOfCharacter) {
    EXPECT_EQ(utf16ToUtf8(u""), "");
    EXPECT_EQ(utf16ToUtf8(u"model"), "model");
    EXPECT_EQ(utf16ToUtf8(u"\u00e9"), "\xc3\xa9");
    EXPECT_EQ(utf16ToUtf8(u"\u20ac"), "\xe2\x82\xac");
    EXPECT_EQ(utf16ToUtf8(u"\uffff"), "\xef\xbf\xbf");
}

TEST(Utf16ToUtf8Test, CombinesSurrogatePairs) {
    EXPECT_EQ(utf16ToUtf8(u"a\xd83d\xde00z"),
              "a\xf0\x9f\x98\x80"
              "z");
}

TEST(Utf16ToUtf8Test, KeepsZeroCharacters) {
    EXPECT_EQ(utf16ToUtf8(std::u16string(u"a\0b", 3)), std::string("a\0b", 3));
}

struct BadUtf16 {
    const char* name;
    std::u16string text;
};

class BadUtf16Test : public ::testing::TestWithParam<BadUtf16> {};

TEST_P(BadUtf16Test, IsABadConversion) {
    EXPECT_THAT([] { utf16ToUtf8(GetParam().text); },
                ThrowsMessage<std::range_error>(StrEq("bad conversion")));
}

INSTANTIATE_TEST_SUITE_P(Texts, BadUtf16Test,
                         ::testing::Values(BadUtf16{"HighSurrogateAtTheEnd", u"a\xd83d"},
                                           BadUtf16{"HighSurrogateBeforeALetter", u"\xd83dz"},
                                           BadUtf16{"TwoHighSurrogates", u"\xd83d\xd83d"},
                                           BadUtf16{"LowSurrogateAlone", u"\xde00"},
                                           BadUtf16{"PairTheWrongWayRound", u"\xde00\xd83d"}),
                         testing::CaseName());

TEST(RequireUtf8Test, TakesUtf8) {
    EXPECT_NO_THROW(requireUtf8(""));
    EXPECT_NO_THROW(requireUtf8("model"));
    EXPECT_NO_THROW(requireUtf8("a\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80"));
    EXPECT_NO_THROW(requireUtf8({"a\0b", 3}));
}

struct BadUtf8 {
    const char* name;
    const char* text;
};

class BadUtf8Test : public ::testing::TestWithParam<BadUtf8> {};

TEST_P(BadUtf8Test, IsABadConversion) {
    EXPECT_THAT([] { requireUtf8(GetParam().text); },
                ThrowsMessage<std::range_error>(StrEq("bad conversion")));
}

INSTANTIATE_TEST_SUITE_P(Texts, BadUtf8Test,
                         ::testing::Values(BadUtf8{"ByteOfNoCharacter", "\xff"},
                                           BadUtf8{"ContinuationAlone", "\x80"},
                                           BadUtf8{"SequenceCutOff", "\xe2\x82"},
                                           BadUtf8{"LongerThanNeeded", "\xc0\xaf"},
                                           BadUtf8{"Surrogate", "\xed\xa0\x80"},
                                           BadUtf8{"BeyondTheLastCharacter", "\xf4\x90\x80\x80"}),
                         testing::CaseName());

}  // namespace
}  // namespace VelmoraQuavin::internal
