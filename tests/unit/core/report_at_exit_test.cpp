// What reports do while the process ends. Each body runs in a process of its own, so that nothing
// has touched the hub before it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "core/logging_hub.h"
#include "quavin/logging.h"
#include "support/captured_output.h"
#include "support/matches_pattern.h"

namespace VelmoraQuavin::internal {
namespace {

using testing::ContainsPattern;
using ::testing::ExitedWithCode;
using ::testing::HasSubstr;

// Negative for the first record where the machine is slow: the chain is made behind its time.
constexpr const char* kStamp = "\\([0-9]{2}:[0-9]{2}:[0-9]{2}:(-|[0-9])[0-9]{1,2}\\) ";

class ReportAtExitDeathTest : public ::testing::Test {
protected:
    ReportAtExitDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

void reportLate() {
    _Report_(false, 0, 0, "late");
}

class ReportingWhenDestroyed : public ILogProcessor {
public:
    ~ReportingWhenDestroyed() override { reportLate(); }
    void process(const LogRecord& /*record*/) override {}
};

[[noreturn]] void exitWithAReportBehindTheHub() {
    testing::sendOutputToErrorStream();
    std::atexit(reportLate);  // before the hub is made, so called after it is gone
    _Report_(false, 0, 0, "early");
    std::exit(0);
}

[[noreturn]] void exitWithAHubThatWasNeverMade() {
    testing::sendOutputToErrorStream();
    std::atexit(reportLate);
    std::exit(0);
}

[[noreturn]] void exitWithAProcessorThatReportsAtItsEnd() {
    testing::sendOutputToErrorStream();
    LoggingHub::find()->setProcessor(std::make_shared<ReportingWhenDestroyed>());
    std::exit(0);
}

[[noreturn]] void exitWithTheDefaultChainReinstalledBehindItsEnd() {
    testing::sendOutputToErrorStream();
    LoggingHub::find();
    std::atexit([] {  // before the default chain is made, so called when that may be gone already
        LoggingHub::find()->setProcessor(nullptr);
        reportLate();
    });
    _Report_(false, 0, 0, "early");
    std::exit(0);
}

TEST_F(ReportAtExitDeathTest, AReportBehindTheHubsEndGoesToStandardOutputUnformatted) {
    EXPECT_EXIT(exitWithAReportBehindTheHub(), ExitedWithCode(0),
                ContainsPattern(kStamp + std::string("early\\[-1\\]\nlate\n")));
}

TEST_F(ReportAtExitDeathTest, AReportMakesAHubThatNeverWas) {
    EXPECT_EXIT(exitWithAHubThatWasNeverMade(), ExitedWithCode(0),
                ContainsPattern(kStamp + std::string("late\\[-1\\]\n")));
}

TEST_F(ReportAtExitDeathTest, AProcessorThatReportsWhileTheHubEndsIsHeardUnformatted) {
    EXPECT_EXIT(exitWithAProcessorThatReportsAtItsEnd(), ExitedWithCode(0), HasSubstr("late\n"));
}

TEST_F(ReportAtExitDeathTest, TheDefaultChainLastsAsLongAsTheHub) {
    EXPECT_EXIT(
        exitWithTheDefaultChainReinstalledBehindItsEnd(), ExitedWithCode(0),
        ContainsPattern(kStamp + std::string("early\\[-1\\]\n") + kStamp + "late\\[-1\\]\n"));
}

}  // namespace
}  // namespace VelmoraQuavin::internal
