#include "text/der.h"

#include <gtest/gtest.h>

namespace VelmoraQuavin::internal {
namespace {

std::string bytes(std::initializer_list<int> values) {
    std::string text;
    for (const int value : values) {
        text += static_cast<char>(value);
    }
    return text;
}

TEST(Der, TakesOneElementAfterTheOther) {
    const std::string text = bytes({0x02, 1, 7, 0x04, 0, 9});
    std::string_view rest = text;
    EXPECT_EQ(takeDer(DerTag::kInteger, rest), bytes({7}));
    EXPECT_EQ(takeDer(DerTag::kBytes, rest), "");
    EXPECT_EQ(rest, bytes({9}));
}

TEST(Der, TakesLengthsUpTo255InTheirOneForm) {
    for (const std::size_t size : {128U, 255U}) {
        const std::string content(size, 'a');
        const std::string text = bytes({0x04, 0x81, static_cast<int>(size)}) + content;
        std::string_view rest = text;
        EXPECT_EQ(takeDer(DerTag::kBytes, rest), content);
        EXPECT_EQ(rest, "");
    }
}

TEST(Der, LeavesWhatItDoesNotTake) {
    const std::string elements[] = {
        "",                                                 // nothing
        bytes({0x04}),                                      // no length
        bytes({0x03, 0}),                                   // another tag
        bytes({0x04, 2, 1}),                                // too short
        bytes({0x04, 0x80, 0, 0}),                          // an indefinite length
        bytes({0x04, 0x81}),                                // half a length
        bytes({0x04, 0x81, 1, 1}),                          // a length in a byte too many
        bytes({0x04, 0x81, 0x80}) + std::string(127, 'a'),  // too short
        bytes({0x04, 0x82, 1, 0}) + std::string(256, 'a'),  // longer than any
    };
    for (const std::string& element : elements) {
        std::string_view rest = element;
        EXPECT_EQ(takeDer(DerTag::kBytes, rest), std::nullopt);
        EXPECT_EQ(rest, element);
    }
}

TEST(Der, WritesWhatItTakes) {
    EXPECT_EQ(makeDer(DerTag::kSequence, bytes({1, 2})), bytes({0x30, 2, 1, 2}));
    EXPECT_EQ(makeDer(DerTag::kSequence, ""), bytes({0x30, 0}));
}

}  // namespace
}  // namespace VelmoraQuavin::internal
