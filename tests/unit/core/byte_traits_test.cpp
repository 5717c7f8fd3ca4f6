#include <gtest/gtest.h>

#include "quavin/text.h"

namespace VelmoraQuavin {
namespace {

using Bytes = String::Bytes;

Bytes bytes(const char* text) {
    return Bytes(reinterpret_cast<const unsigned char*>(text));
}

TEST(ByteTraitsTest, NoByteEqualsEof) {
    for (int value = 0; value < 256; ++value) {
        const auto byte = static_cast<unsigned char>(value);
        const int integer = ByteTraits::to_int_type(byte);
        EXPECT_FALSE(ByteTraits::eq_int_type(integer, ByteTraits::eof())) << value;
        EXPECT_EQ(ByteTraits::to_char_type(integer), byte);
        EXPECT_EQ(ByteTraits::not_eof(integer), integer);
    }
    EXPECT_NE(ByteTraits::not_eof(ByteTraits::eof()), ByteTraits::eof());
}

TEST(ByteTraitsTest, ComparesUnsignedValues) {
    EXPECT_TRUE(ByteTraits::lt(0x7f, 0x80));
    EXPECT_FALSE(ByteTraits::lt(0x80, 0x7f));
    EXPECT_TRUE(ByteTraits::eq(0xff, 0xff));
    EXPECT_LT(bytes("\x7f").compare(bytes("\x80")), 0);
    EXPECT_EQ(bytes("ab").compare(0, 2, bytes("ab")), 0);
}

TEST(ByteTraitsTest, HandlesEmptyRanges) {
    EXPECT_EQ(ByteTraits::find(nullptr, 0, 'a'), nullptr);
    EXPECT_EQ(ByteTraits::compare(nullptr, nullptr, 0), 0);
    EXPECT_EQ(bytes("").find('a'), Bytes::npos);
}

TEST(ByteTraitsTest, FindsTheFirstOccurrence) {
    EXPECT_EQ(bytes("abcabc").find('b'), 1U);
    EXPECT_EQ(bytes("abcabc").find(bytes("ca")), 2U);
    EXPECT_EQ(bytes("abc").find('x'), Bytes::npos);
}

TEST(ByteTraitsTest, MovesWithinOneString) {
    Bytes text = bytes("abcdef");
    text.erase(1, 2);
    EXPECT_EQ(text, bytes("adef"));
    text.insert(0, 3, 'x');
    EXPECT_EQ(text, bytes("xxxadef"));
    text.replace(0, 4, text, 2, 5);
    EXPECT_EQ(text, bytes("xadefdef"));
}

}  // namespace
}  // namespace VelmoraQuavin
