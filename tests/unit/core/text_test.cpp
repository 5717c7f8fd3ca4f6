#include "quavin/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iomanip>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <unordered_map>

namespace VelmoraQuavin {
namespace {

using ::testing::ElementsAre;

const std::string kWithZeroByte("ab\0cd", 5);

std::string overloadFor(const String& /*text*/) {
    return "String";
}
std::string overloadFor(const std::u16string& /*text*/) {
    return "UTF-16";
}

TEST(TextTest, IsEmptyByDefault) {
    const String text;
    EXPECT_TRUE(text.empty());
    EXPECT_EQ(text.size(), 0U);
    EXPECT_EQ(text.c_str()[0], 0);
    EXPECT_EQ(text.str(), "");
}

TEST(TextTest, ConvertsImplicitlyFromNarrowText) {
    const String fromLiteral = "abc";
    const String fromString = std::string("abc");
    const String fromView = std::string_view("abc");
    EXPECT_EQ(fromLiteral.str(), "abc");
    EXPECT_EQ(fromString.str(), "abc");
    EXPECT_EQ(fromView.str(), "abc");
}

TEST(TextTest, ACharacterPointerEndsAtItsZeroByte) {
    const unsigned char bytes[] = {'a', 'b', 0, 'c', 0};
    EXPECT_EQ(String(kWithZeroByte.c_str()).str(), "ab");
    EXPECT_EQ(String(bytes).str(), "ab");
}

TEST(TextTest, ANullPointerYieldsAnEmptyText) {
    EXPECT_TRUE(String(static_cast<const char*>(nullptr)).empty());
    EXPECT_TRUE(String(static_cast<const unsigned char*>(nullptr)).empty());
    EXPECT_TRUE(String(std::string_view()).empty());
}

TEST(TextTest, TextsWithALengthKeepTheirZeroBytes) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(kWithZeroByte.data());
    EXPECT_EQ(String(kWithZeroByte).str(), kWithZeroByte);
    EXPECT_EQ(String(std::string_view(kWithZeroByte)).str(), kWithZeroByte);
    EXPECT_EQ(String(kWithZeroByte.data(), 5).str(), kWithZeroByte);
    EXPECT_EQ(String(bytes, 5).str(), kWithZeroByte);
    EXPECT_EQ(String(kWithZeroByte).size(), 5U);
}

TEST(TextTest, IsFollowedByAZeroByte) {
    const String text = "abc";
    EXPECT_EQ(text.c_str()[3], 0);
    EXPECT_EQ(text.data()[3], 0);
}

TEST(TextTest, ReturnsItsBytesAsAView) {
    const String text(kWithZeroByte);
    EXPECT_EQ(text.view(), std::string_view(kWithZeroByte));
}

TEST(TextTest, SizeCountsBytesNotCharacters) {
    EXPECT_EQ(String("\xc3\xa9\xe2\x82\xac").size(), 5U);  // an e with acute, and the euro sign
}

TEST(TextTest, NarrowTextIsNotAmbiguousWithAUtf16Overload) {
    char buffer[] = "abc";
    EXPECT_EQ(overloadFor("abc"), "String");
    EXPECT_EQ(overloadFor(buffer), "String");
    EXPECT_EQ(overloadFor(std::string("abc")), "String");
    EXPECT_EQ(overloadFor(std::string_view("abc")), "String");
    EXPECT_EQ(overloadFor(""), "String");
    EXPECT_EQ(overloadFor(u"abc"), "UTF-16");
    EXPECT_EQ(overloadFor(std::u16string(u"abc")), "UTF-16");
}

TEST(TextTest, EqualsOnlyTheSameBytes) {
    EXPECT_TRUE(String("abc") == "abc");
    EXPECT_TRUE("abc" == String("abc"));
    EXPECT_TRUE(String("abc") != "abd");
    EXPECT_FALSE(String("abc") == "ab");
    EXPECT_FALSE(String(kWithZeroByte) == "ab");
    EXPECT_TRUE(String(kWithZeroByte) == kWithZeroByte);
}

TEST(TextTest, SortsByUnsignedBytes) {
    EXPECT_TRUE(String("\x7f") < String("\x80"));
    EXPECT_FALSE(String("\xff") < String("a"));
    EXPECT_TRUE(String("ab") < String("abc"));
    EXPECT_FALSE(String("abc") < String("abc"));
    EXPECT_TRUE(String("ab") < String(kWithZeroByte));

    const std::set<String> sorted = {"\xc3\xa9", "z", "a"};
    EXPECT_THAT(sorted, ElementsAre(String("a"), String("z"), String("\xc3\xa9")));
}

TEST(TextTest, JoiningKeepsZeroBytes) {
    EXPECT_EQ((String(kWithZeroByte) + "x").str(), kWithZeroByte + "x");
    EXPECT_EQ(("x" + String(kWithZeroByte)).str(), "x" + kWithZeroByte);

    String text = "a";
    text.append("b").append(String("c"));
    text += "d";
    EXPECT_EQ(text.str(), "abcd");
    text += text;
    EXPECT_EQ(text.str(), "abcdabcd");
}

TEST(TextTest, JoiningLeavesTheOperandsAlone) {
    const String left = "a";
    const String right = "b";
    EXPECT_EQ((left + right).str(), "ab");
    EXPECT_EQ(left.str(), "a");
    EXPECT_EQ(right.str(), "b");
}

TEST(TextTest, CopiesAreIndependent) {
    const String original = "abc";
    String copy = original;
    copy[0] = 'x';
    EXPECT_EQ(copy.str(), "xbc");
    EXPECT_EQ(original.str(), "abc");
}

TEST(TextTest, ClearRemovesAllBytes) {
    String text = "abc";
    text.clear();
    EXPECT_TRUE(text.empty());
}

TEST(TextTest, BytesAreUnsigned) {
    const String text = "\xff\x01";
    EXPECT_EQ(text[0], 255);
    EXPECT_EQ(std::count(text.begin(), text.end(), 1), 1);
}

TEST(TextTest, HashesAllBytes) {
    const std::hash<String> hash;
    EXPECT_EQ(hash("abc"), hash(std::string("abc")));
    EXPECT_NE(hash("ab"), hash(kWithZeroByte));

    const std::unordered_map<String, int> numbers = {{"one", 1}, {kWithZeroByte, 2}};
    EXPECT_EQ(numbers.at("one"), 1);
    EXPECT_EQ(numbers.at(kWithZeroByte), 2);
    EXPECT_EQ(numbers.count("ab"), 0U);
}

TEST(TextTest, StreamsAllBytes) {
    std::ostringstream stream;
    stream << String(kWithZeroByte) << String("!");
    EXPECT_EQ(stream.str(), kWithZeroByte + "!");
}

TEST(TextTest, StreamingHonorsTheWidth) {
    std::ostringstream stream;
    stream << std::setw(5) << std::setfill('.') << std::left << String("ab");
    EXPECT_EQ(stream.str(), "ab...");
}

}  // namespace
}  // namespace VelmoraQuavin
