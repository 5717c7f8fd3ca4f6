#include "text/unicode.h"

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

TEST_P(BadUtf16Test, ThrowsBadConversion) {
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

TEST(RequireUtf8Test, AcceptsUtf8) {
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

TEST_P(BadUtf8Test, ThrowsBadConversion) {
    EXPECT_THAT([] { requireUtf8(GetParam().text); },
                ThrowsMessage<std::range_error>(StrEq("bad conversion")));
}

INSTANTIATE_TEST_SUITE_P(Texts, BadUtf8Test,
                         ::testing::Values(BadUtf8{"InvalidByte", "\xff"},
                                           BadUtf8{"ContinuationAlone", "\x80"},
                                           BadUtf8{"TruncatedSequence", "\xe2\x82"},
                                           BadUtf8{"Overlong", "\xc0\xaf"},
                                           BadUtf8{"Surrogate", "\xed\xa0\x80"},
                                           BadUtf8{"PastTheLastCodePoint", "\xf4\x90\x80\x80"}),
                         testing::CaseName());

TEST(Utf8ToUtf16, ConvertsEveryLengthOfSequence) {
    EXPECT_EQ(utf8ToUtf16("a\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80"), u"a\u00FC\u20AC\U0001F600");
    EXPECT_EQ(utf8ToUtf16(""), u"");
}

TEST(Utf8ToUtf16, ThrowsBadConversionForInvalidUtf8) {
    for (const char* const text : {"\xFF", "a\xC3", "\xED\xA0\x80", "\xC0\x80"}) {
        EXPECT_THAT([text] { utf8ToUtf16(text); },
                    ThrowsMessage<std::range_error>(StrEq("bad conversion")));
    }
}

TEST(PrintableText, KeepsLettersOfEveryScript) {
    EXPECT_EQ(printableText("gr\xC3\xB6\xC3\x9F"
                            "e \xE6\x97\xA5 \xF0\x9F\x98\x80 ~"),
              "gr\xC3\xB6\xC3\x9F"
              "e \xE6\x97\xA5 \xF0\x9F\x98\x80 ~");
}

TEST(PrintableText, ReplacesTerminalControlsWithQuestionMarks) {
    EXPECT_EQ(printableText(std::string_view("a\0b\n\t\x1B[31m\x7F", 11)), "a?b???[31m?");
    EXPECT_EQ(printableText("\xC2\x9B"
                            "31m"),
              "?31m");  // U+009B
    EXPECT_EQ(printableText("a\xE2\x80\xAE"
                            "b"),
              "a?b");  // U+202E
    EXPECT_EQ(printableText("a\xE2\x81\xA6"
                            "b"),
              "a?b");  // U+2066
    EXPECT_EQ(printableText("a\xE2\x80\xA8"
                            "b"),
              "a?b");  // U+2028
}

TEST(PrintableText, ReplacesInvalidUtf8WithQuestionMarks) {
    EXPECT_EQ(printableText("a\xFF"
                            "b\xC3"),
              "a?b?");
}

TEST(ToAsciiLower, ChangesAsciiLettersOnly) {
    EXPECT_EQ(toAsciiLower("OpenVINO.DLL 1_Z"), "openvino.dll 1_z");
    EXPECT_EQ(toAsciiLower("\xC3\x84@["), "\xC3\x84@[");
}

}  // namespace
}  // namespace VelmoraQuavin::internal
