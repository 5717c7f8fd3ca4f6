#include "text/base64.h"

#include <gtest/gtest.h>

namespace VelmoraQuavin::internal {
namespace {

struct Pair {
    std::string bytes;
    std::string text;
};

// The examples of RFC 4648, and every character of the alphabet.
const Pair kPairs[] = {
    {"", ""},
    {"f", "Zg=="},
    {"fo", "Zm8="},
    {"foo", "Zm9v"},
    {"foob", "Zm9vYg=="},
    {"fooba", "Zm9vYmE="},
    {"foobar", "Zm9vYmFy"},
    {std::string("\0\0\0\0", 4), "AAAAAA=="},
    {"\xFB\xEF\xBE\xFF\xFF\xFF", "++++////"},
};

TEST(Base64, EncodesThePublishedExamples) {
    for (const auto& [bytes, text] : kPairs) {
        EXPECT_EQ(encodeBase64(bytes), text);
    }
}

TEST(Base64, DecodesThePublishedExamples) {
    for (const auto& [bytes, text] : kPairs) {
        EXPECT_EQ(decodeBase64(text), bytes) << text;
    }
}

TEST(Base64, EveryByteSurvivesTheWayThereAndBack) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    EXPECT_EQ(decodeBase64(encodeBase64(bytes)), bytes);
}

TEST(Base64, RefusesEverythingButTheOneFormOfSomeBytes) {
    for (const char* const text :
         {"Z",      "Zg",         "Zg=",      "Zm8",   "Zm9vYg",   "=",       "==",   "===",
          "====",   "Z===",       "Zg==Zm9v", "Zm9v=", "Zm9v====", "Zg=a",    "Z=g=", " Zm9v",
          "Zm9v\n", "Zm9v\nZm9v", "Zm 9",     "Zm-_",  "Zm9*",     "Zm9\x80", "Zh==", "Zm9="}) {
        EXPECT_EQ(decodeBase64(text), std::nullopt) << text;
    }
    EXPECT_EQ(decodeBase64(std::string("Zm9\0", 4)), std::nullopt);
}

TEST(Base64, LineBreaksAreSkippedWhereTheyMayBe) {
    for (const char* const text : {"Zm9vYg==", "Zm9v\nYg==\n", "\r\nZ\rm9vYg=\n="}) {
        std::string bytes;
        EXPECT_TRUE(decodeBase64Lines(text, bytes)) << text;
        EXPECT_EQ(bytes, "foob");
    }
    for (const char* const text : {"Zm9vYg", "Zm9v Yg==", "Zm9vYg==\nZg=="}) {
        std::string bytes;
        EXPECT_FALSE(decodeBase64Lines(text, bytes)) << text;
    }
}

TEST(Base64, WhatIsDecodedBeforeARefusalStaysWhereItCanBeWiped) {
    std::string bytes;
    EXPECT_FALSE(decodeBase64Lines("Zm9v*", bytes));
    EXPECT_EQ(bytes, "foo");
}

}  // namespace
}  // namespace VelmoraQuavin::internal
