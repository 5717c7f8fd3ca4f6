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

// Records the size of each write.
class CountingBuffer : public std::stringbuf {
public:
    std::vector<std::streamsize> counts;
    std::streamsize room = 1000;  // for writing

protected:
    std::streamsize xsputn(const char* bytes, std::streamsize count) override {
        counts.push_back(count);
        const std::streamsize taken = std::min(count, room);
        room -= taken;
        return std::stringbuf::xsputn(bytes, taken);
    }
};

TEST(StreamSteps, TheLargestStepIsBelowTwoGibibytes) {
    EXPECT_LT(kLargestStreamStep, 2147483647u);
}

TEST(WriteInSteps, WritesAllInStepsOfTheGivenSize) {
    CountingBuffer content;
    std::ostream stream(&content);
    writeInSteps(stream, "0123456789", 10, 4);
    EXPECT_EQ(content.str(), "0123456789");
    EXPECT_THAT(content.counts, ElementsAre(4, 4, 2));
    EXPECT_TRUE(stream.good());
}

TEST(WriteInSteps, StopsWhenTheStreamFails) {
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
