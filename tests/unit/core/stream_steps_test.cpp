#include "core/stream_steps.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace VelmoraQuavin::internal {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Remembers how much each call asked for.
class CountingBuffer : public std::stringbuf {
public:
    explicit CountingBuffer(const std::string& content = "") : std::stringbuf(content) {}

    std::vector<std::streamsize> counts;
    std::streamsize room = 1000;  // for writing

protected:
    std::streamsize xsgetn(char* bytes, std::streamsize count) override {
        counts.push_back(count);
        return std::stringbuf::xsgetn(bytes, count);
    }
    std::streamsize xsputn(const char* bytes, std::streamsize count) override {
        counts.push_back(count);
        const std::streamsize taken = std::min(count, room);
        room -= taken;
        return std::stringbuf::xsputn(bytes, taken);
    }
};

TEST(StreamSteps, AreOfLessThanTwoGibibytes) {
    EXPECT_LT(kLargestStreamStep, 2147483647u);
}

TEST(ReadInSteps, ReadsAllInStepsOfTheGivenSize) {
    CountingBuffer content("0123456789");
    std::istream stream(&content);
    std::string buffer(12, '#');
    EXPECT_EQ(readInSteps(stream, buffer.data(), 10, 4), 10u);
    EXPECT_EQ(buffer, "0123456789##");
    EXPECT_THAT(content.counts, ElementsAre(4, 4, 2));
}

TEST(ReadInSteps, TellsHowMuchThereWas) {
    CountingBuffer content("01234");
    std::istream stream(&content);
    std::string buffer(12, '#');
    EXPECT_EQ(readInSteps(stream, buffer.data(), 12, 3), 5u);
    EXPECT_EQ(buffer, "01234#######");
    EXPECT_THAT(content.counts, ElementsAre(3, 3));
}

TEST(ReadInSteps, ReadsNothingFromAStreamThatHasFailed) {
    CountingBuffer content("01234");
    std::istream stream(&content);
    stream.setstate(std::ios::failbit);
    std::string buffer(5, '#');
    EXPECT_EQ(readInSteps(stream, buffer.data(), 5, 3), 0u);
    EXPECT_EQ(buffer, "#####");
}

TEST(WriteInSteps, WritesAllInStepsOfTheGivenSize) {
    CountingBuffer content;
    std::ostream stream(&content);
    writeInSteps(stream, "0123456789", 10, 4);
    EXPECT_EQ(content.str(), "0123456789");
    EXPECT_THAT(content.counts, ElementsAre(4, 4, 2));
    EXPECT_TRUE(stream.good());
}

TEST(WriteInSteps, StopsWhereTheStreamFails) {
    CountingBuffer content;
    content.room = 6;
    std::ostream stream(&content);
    writeInSteps(stream, "0123456789", 10, 4);
    EXPECT_EQ(content.str(), "012345");
    EXPECT_THAT(content.counts, ElementsAre(4, 4));
    EXPECT_FALSE(stream.good());
}

TEST(WriteInSteps, WritesNothingForNoBytes) {
    CountingBuffer content;
    std::ostream stream(&content);
    writeInSteps(stream, nullptr, 0);
    EXPECT_THAT(content.counts, IsEmpty());
    EXPECT_TRUE(stream.good());
}

}  // namespace
}  // namespace VelmoraQuavin::internal
