// Reports made while the process exits. Each body runs in its own process, where nothing has
// touched the hub yet.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "core/logging_hub.h"
#include "quavin/logging.h"
#include "support/at_exit.h"
#include "support/captured_output.h"
#include "support/matches_pattern.h"

namespace VelmoraQuavin::internal {
namespace {

using testing::ContainsPattern;
using ::testing::ExitedWithCode;
using ::testing::HasSubstr;

// May be negative for the first record on a slow machine: the chain is created after that record is
// stamped.
constexpr const char* kStamp = "\\([0-9]{2}:[0-9]{2}:[0-9]{2}:(-|[0-9])[0-9]{1,2}\\) ";

class ReportAtExitDeathTest : public ::testing::Test {
protected:
    ReportAtExitDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

void reportLate() {
    _Report_(false, 0, 0, "late");
}

class ReportingLateWhenDestroyed : public ILogProcessor {
public:
    ~ReportingLateWhenDestroyed() override { reportLate(); }
    void process(const LogRecord& /*record*/) override {}
};

[[noreturn]] void exitWithAReportAfterTheHub() {
    testing::sendOutputToErrorStream();
    // Registered before the hub is created, so called after it is gone.
    testing::callAtExit(reportLate);
    _Report_(false, 0, 0, "early");
    std::exit(0);
}

[[noreturn]] void exitWithAHubThatWasNeverCreated() {
    testing::sendOutputToErrorStream();
    testing::callAtExit(reportLate);
    std::exit(0);
}

[[noreturn]] void exitWithAProcessorThatReportsWhenDestroyed() {
    testing::sendOutputToErrorStream();
    LoggingHub::find()->setProcessor(std::make_shared<ReportingLateWhenDestroyed>());
    std::exit(0);
}

[[noreturn]] void exitWithTheDefaultChainReinstalledLate() {
    testing::sendOutputToErrorStream();
    LoggingHub::find();
    // Registered before the default chain is created, so it may be gone by then.
    testing::callAtExit([] {
        LoggingHub::find()->setProcessor(nullptr);
        reportLate();
    });
    _Report_(false, 0, 0, "early");
    std::exit(0);
}

TEST_F(ReportAtExitDeathTest, AReportAfterTheHubIsGoneIsPrintedUnformatted) {
    EXPECT_EXIT(exitWithAReportAfterTheHub(), ExitedWithCode(0),
                ContainsPattern(kStamp + std::string("early\\[-1\\]\nlate\n")));
}

TEST_F(ReportAtExitDeathTest, AReportCreatesTheHubIfNoneExists) {
    EXPECT_EXIT(exitWithAHubThatWasNeverCreated(), ExitedWithCode(0),
                ContainsPattern(kStamp + std::string("late\\[-1\\]\n")));
}

TEST_F(ReportAtExitDeathTest, AReportMadeWhileTheHubIsDestroyedIsPrintedUnformatted) {
    EXPECT_EXIT(exitWithAProcessorThatReportsWhenDestroyed(), ExitedWithCode(0),
                HasSubstr("late\n"));
}

TEST_F(ReportAtExitDeathTest, TheDefaultChainLastsAsLongAsTheHub) {
    EXPECT_EXIT(
        exitWithTheDefaultChainReinstalledLate(), ExitedWithCode(0),
        ContainsPattern(kStamp + std::string("early\\[-1\\]\n") + kStamp + "late\\[-1\\]\n"));
}

}  // namespace
}  // namespace VelmoraQuavin::internal
