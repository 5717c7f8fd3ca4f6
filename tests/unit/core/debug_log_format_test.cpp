#include <gtest/gtest.h>

#include <limits>
#include <locale>
#include <string>

#include "quavin/logging.h"
#include "support/case_name.h"

namespace VelmoraQuavin {
namespace {

constexpr long long kStart = 123'456'789;

LogRecord recordAt(long long elapsed) {
    LogRecord record;
    record.message = "message";
    record.time = kStart + elapsed;
    return record;
}

struct Stamp {
    const char* name;
    long long elapsed;  // in ticks of 100 nanoseconds
    const char* line;
};

class DebugLogFormatStampTest : public ::testing::TestWithParam<Stamp> {};

TEST_P(DebugLogFormatStampTest, CountsFromTheStart) {
    const LogRecord formatted = DebugLogFormat::format(recordAt(GetParam().elapsed), kStart);
    EXPECT_EQ(formatted.message, GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(
    Elapsed, DebugLogFormatStampTest,
    ::testing::Values(Stamp{"Nothing", 0, "(00:00:00:00) message[-1]"},
                      Stamp{"JustBelowAMillisecond", 9'999, "(00:00:00:00) message[-1]"},
                      Stamp{"OneMillisecond", 10'000, "(00:00:00:01) message[-1]"},
                      Stamp{"NinetyNineMilliseconds", 990'000, "(00:00:00:99) message[-1]"},
                      Stamp{"HundredMilliseconds", 1'000'000, "(00:00:00:100) message[-1]"},
                      Stamp{"JustBelowASecond", 9'999'999, "(00:00:00:999) message[-1]"},
                      Stamp{"OneSecondFiveMilliseconds", 10'050'000, "(00:00:01:05) message[-1]"},
                      Stamp{"OneMinute", 600'000'000, "(00:01:00:00) message[-1]"},
                      Stamp{"JustBelowAnHour", 35'999'990'000, "(00:59:59:999) message[-1]"},
                      Stamp{"OneHour", 36'000'000'000, "(01:00:00:00) message[-1]"},
                      Stamp{"ThreeHoursFourMinutesFiveSecondsSixMilliseconds", 110'450'060'000,
                            "(03:04:05:06) message[-1]"},
                      Stamp{"HundredHours", 3'600'000'000'000, "(100:00:00:00) message[-1]"}),
    testing::CaseName());

TEST(DebugLogFormatTest, ChangesOnlyTheMessage) {
    LogRecord record = recordAt(0);
    record.category = std::numeric_limits<std::uint64_t>::max();
    record.level = std::numeric_limits<std::uint32_t>::max();
    record.tag = 42;

    const LogRecord formatted = DebugLogFormat::format(record, kStart);
    EXPECT_EQ(formatted.category, record.category);
    EXPECT_EQ(formatted.level, record.level);
    EXPECT_EQ(formatted.tag, 42);
    EXPECT_EQ(formatted.time, kStart);
    EXPECT_EQ(record.message, "message");
}

TEST(DebugLogFormatTest, EndsWithTheTag) {
    LogRecord record = recordAt(0);
    record.tag = 42;
    EXPECT_EQ(DebugLogFormat::format(record, kStart).message, "(00:00:00:00) message[42]");
    record.tag = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(DebugLogFormat::format(record, kStart).message,
              "(00:00:00:00) message[-9223372036854775808]");
}

TEST(DebugLogFormatTest, FormatsAnEmptyMessage) {
    LogRecord record = recordAt(0);
    record.message.clear();
    EXPECT_EQ(DebugLogFormat::format(record, kStart).message, "(00:00:00:00) [-1]");
}

TEST(DebugLogFormatTest, KeepsZeroBytesInTheMessage) {
    LogRecord record = recordAt(0);
    record.message = String("a\0b", 3);
    EXPECT_EQ(DebugLogFormat::format(record, kStart).message, String("(00:00:00:00) a\0b[-1]", 21));
}

class GroupedDigits : public std::numpunct<char> {
protected:
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\1"; }
};

TEST(DebugLogFormatTest, IgnoresTheGlobalLocale) {
    const std::locale previous =
        std::locale::global(std::locale(std::locale::classic(), new GroupedDigits));
    const LogRecord formatted = DebugLogFormat::format(recordAt(3'600'000'000'000), kStart);
    std::locale::global(previous);
    EXPECT_EQ(formatted.message, "(100:00:00:00) message[-1]");
}

}  // namespace
}  // namespace VelmoraQuavin
