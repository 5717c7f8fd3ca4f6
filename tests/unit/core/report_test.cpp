#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <ios>
#include <iostream>
#include <limits>
#include <streambuf>
#include <string>
#include <thread>

#include "hub_fixture.h"
#include "platform/clock.h"
#include "support/captured_output.h"

namespace VelmoraQuavin::internal {
namespace {

using testing::CapturedOutput;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Reports straight to standard output from within every record.
class DirectlyReportingLogProcessor : public ILogProcessor {
public:
    void process(const LogRecord& /*record*/) override {
        _Report_(false, 0, 0, "deeper");
        _Report_(true, 0, 0, "direct");
    }
};

/// Makes std::cout throw on every character.
class FailingOutput : public std::streambuf {
public:
    FailingOutput() : previous_(std::cout.rdbuf(this)) { std::cout.exceptions(std::ios::badbit); }
    FailingOutput(const FailingOutput&) = delete;
    FailingOutput& operator=(const FailingOutput&) = delete;
    ~FailingOutput() override {
        std::cout.exceptions(std::ios::goodbit);
        std::cout.rdbuf(previous_);
    }

private:
    std::streambuf* previous_;
};

class ReportTest : public HubFixture {};

TEST_F(ReportTest, FillsTheRecord) {
    const std::int64_t before = platform::monotonicTicks();
    _Report_(false, 5, 7, "message");
    const std::int64_t after = platform::monotonicTicks();

    ASSERT_EQ(recorder_->records().size(), 1U);
    const LogRecord& record = recorder_->records().front();
    EXPECT_EQ(record.message, "message");
    EXPECT_EQ(record.category, 5U);
    EXPECT_EQ(record.level, 7U);
    EXPECT_EQ(record.tag, -1);
    EXPECT_GE(record.time, before);
    EXPECT_LE(record.time, after);
}

TEST_F(ReportTest, StoresTheWidestNumbersUnchanged) {
    _Report_(false, std::numeric_limits<std::size_t>::max(), std::numeric_limits<unsigned>::max(),
             String("a\0b", 3));
    ASSERT_EQ(recorder_->records().size(), 1U);
    const LogRecord& record = recorder_->records().front();
    EXPECT_EQ(record.message, String("a\0b", 3));
    EXPECT_EQ(record.category, std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(record.level, std::numeric_limits<std::uint32_t>::max());
}

TEST_F(ReportTest, TimeIsInTicksOfHundredNanoseconds) {
    using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
    const auto begin = std::chrono::steady_clock::now();
    report("first");
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    report("second");
    const auto passed = std::chrono::duration_cast<Ticks>(std::chrono::steady_clock::now() - begin);

    ASSERT_EQ(recorder_->records().size(), 2U);
    const std::int64_t between = recorder_->records()[1].time - recorder_->records()[0].time;
    EXPECT_GE(between, 200'000);  // 20 milliseconds
    EXPECT_LE(between, passed.count() + 1);
}

TEST_F(ReportTest, DirectReportsGoToStandardOutputUnformatted) {
    const CapturedOutput output;
    _Report_(true, 3, 5, "hello");
    EXPECT_EQ(output.text(), "hello\n");
    EXPECT_THAT(recorder_->messages(), IsEmpty());
}

TEST_F(ReportTest, DirectReportsEndAtTheFirstZeroByte) {
    const CapturedOutput output;
    _Report_(true, 0, 0, String("before\0after", 12));
    EXPECT_EQ(output.text(), "before\n");
}

TEST_F(ReportTest, DirectReportsDoNotCountAsNested) {
    install(std::make_shared<DirectlyReportingLogProcessor>());
    const CapturedOutput output;
    report("outermost");
    std::string lines;
    for (int count = 0; count < 9; ++count) {
        lines += "direct\n";
    }
    EXPECT_EQ(output.text(), lines);
}

TEST_F(ReportTest, OtherReportsGoOnlyToTheInstalledProcessor) {
    const CapturedOutput output;
    report("hello");
    EXPECT_EQ(output.text(), "");
    EXPECT_THAT(recorder_->messages(), ElementsAre("hello"));
}

TEST_F(ReportTest, NeverThrowsIfOutputFails) {
    const FailingOutput output;
    EXPECT_NO_THROW(_Report_(true, 0, 0, "direct"));
    install(nullptr);
    EXPECT_NO_THROW(report("through the default chain"));
}

}  // namespace
}  // namespace VelmoraQuavin::internal
