#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <thread>

#include "hub_fixture.h"
#include "support/captured_output.h"
#include "support/matches_pattern.h"

namespace VelmoraQuavin::internal {
namespace {

using testing::CapturedOutput;
using testing::MatchesPattern;

class DefaultLogChainTest : public HubFixture {
protected:
    // The chain is created after the first record is stamped, so on a slow machine that record's
    // stamp can be negative.
    DefaultLogChainTest() {
        install(nullptr);
        printed("creates the chain");
    }

    static std::string printed(const String& message) {
        const CapturedOutput output;
        report(message);
        return output.text();
    }
    /// The stamp at the beginning of a line, in milliseconds; negative if there is none.
    static long long millisecondsOf(const std::string& line) {
        long long hours = 0;
        long long minutes = 0;
        long long seconds = 0;
        long long milliseconds = 0;
        // NOLINTNEXTLINE(cert-err34-c,bugprone-unchecked-string-to-number-conversion): the line has already been matched
        const int numbers = std::sscanf(line.c_str(), "(%lld:%lld:%lld:%lld) ", &hours, &minutes,
                                        &seconds, &milliseconds);
        return numbers == 4 ? ((hours * 60 + minutes) * 60 + seconds) * 1000 + milliseconds : -1;
    }
};

TEST_F(DefaultLogChainTest, PrintsTheMessageBetweenStampAndTag) {
    EXPECT_THAT(printed("hello"),
                MatchesPattern("\\([0-9]{2}:[0-9]{2}:[0-9]{2}:[0-9]{2,3}\\) hello\\[-1\\]\n"));
}

TEST_F(DefaultLogChainTest, IsNotUsedWhileAProcessorIsInstalled) {
    install(recorder_);
    EXPECT_EQ(printed("hello"), "");
}

TEST_F(DefaultLogChainTest, TheLineEndsAtTheFirstZeroByteOfTheMessage) {
    EXPECT_THAT(printed(String("before\0after", 12)),
                MatchesPattern("\\([0-9]{2}:[0-9]{2}:[0-9]{2}:[0-9]{2,3}\\) before\n"));
}

TEST_F(DefaultLogChainTest, IsCreatedOnceAndCountsFromThen) {
    using std::chrono::milliseconds;
    const auto begin = std::chrono::steady_clock::now();
    const long long first = millisecondsOf(printed("first"));
    std::this_thread::sleep_for(milliseconds(50));
    install(recorder_);
    install(nullptr);
    const long long second = millisecondsOf(printed("second"));
    const auto passed =
        std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - begin);

    ASSERT_GE(first, 0);
    EXPECT_GE(second - first, 49);
    EXPECT_LE(second - first, passed.count() + 1);
}

}  // namespace
}  // namespace VelmoraQuavin::internal
