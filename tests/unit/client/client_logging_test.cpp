// Where reports go while the client is switched on and off.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "client_fixture.h"
#include "core/diagnostics.h"
#include "quavin/client.h"
#include "quavin/logging.h"
#include "support/captured_output.h"
#include "support/recording_log_processor.h"

namespace VelmoraQuavin {
namespace {

using testing::CapturedOutput;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::RecordingLogProcessor;

void report(const char* message) {
    _Report_(false, 0, 0, message);
}

class ClientLoggingTest : public ClientFixture {
protected:
    static std::string printed(const char* message) {
        const CapturedOutput output;
        report(message);
        return output.text();
    }

    std::shared_ptr<RecordingLogProcessor> logger_ = std::make_shared<RecordingLogProcessor>();
    std::shared_ptr<RecordingLogProcessor> other_ = std::make_shared<RecordingLogProcessor>();
};

TEST_F(ClientLoggingTest, InitInstallsTheLogger) {
    QuavinClient::init(configOf(logger_));
    EXPECT_EQ(printed("hello"), "");
    EXPECT_THAT(logger_->messages(), ElementsAre("hello"));
}

TEST_F(ClientLoggingTest, ASecondInitDoesNotInstallItsLogger) {
    QuavinClient::init(configOf(logger_));
    QuavinClient::init(configOf(other_));
    report("hello");
    EXPECT_THAT(logger_->messages(), ElementsAre("hello"));
    EXPECT_THAT(other_->messages(), IsEmpty());
}

TEST_F(ClientLoggingTest, WithoutALoggerReportsGoToStandardOutput) {
    QuavinClient::init(QuavinConfig());
    EXPECT_THAT(printed("hello"), HasSubstr(") hello[-1]\n"));
}

TEST_F(ClientLoggingTest, TerminateRemovesTheLogger) {
    QuavinClient::init(configOf(logger_));
    QuavinClient::terminate();
    EXPECT_THAT(printed("hello"), HasSubstr(") hello[-1]\n"));
    EXPECT_THAT(logger_->messages(), IsEmpty());
}

TEST_F(ClientLoggingTest, TerminateWhileOffKeepsReportingToStandardOutput) {
    QuavinClient::terminate();
    EXPECT_THAT(printed("hello"), HasSubstr(") hello[-1]\n"));
}

TEST_F(ClientLoggingTest, ANewInitInstallsItsOwnLogger) {
    QuavinClient::init(configOf(logger_));
    QuavinClient::terminate();
    QuavinClient::init(configOf(other_));
    report("hello");
    EXPECT_THAT(logger_->messages(), IsEmpty());
    EXPECT_THAT(other_->messages(), ElementsAre("hello"));
}

TEST_F(ClientLoggingTest, ChangingTheHostsConfigurationChangesNothing) {
    QuavinConfig config = configOf(logger_);
    QuavinClient::init(config);
    config.SetLogger(other_);
    report("hello");
    EXPECT_THAT(logger_->messages(), ElementsAre("hello"));
    EXPECT_THAT(other_->messages(), IsEmpty());
}

TEST_F(ClientLoggingTest, TheLoggerIsKeptUntilTheNextInit) {
    const std::weak_ptr<RecordingLogProcessor> watched = logger_;
    QuavinClient::init(configOf(logger_));
    logger_.reset();
    QuavinClient::terminate();
    EXPECT_FALSE(watched.expired());
    QuavinClient::init(configOf(other_));
    EXPECT_TRUE(watched.expired());
}

TEST_F(ClientLoggingTest, DiagnosticsAreOnFromInitToTerminateIfRequested) {
    QuavinConfig config = configOf(logger_);
    config.SetDiagnostics(true);
    QuavinClient::init(config);
    internal::diagnose([] { return "while on"; });
    QuavinClient::terminate();
    QuavinClient::init(configOf(logger_));
    internal::diagnose([] { return "not requested"; });
    EXPECT_THAT(logger_->messages(), ElementsAre("while on"));
}

TEST_F(ClientLoggingTest, ASecondInitDoesNotSwitchDiagnosticsOn) {
    QuavinClient::init(configOf(logger_));
    QuavinConfig config = configOf(logger_);
    config.SetDiagnostics(true);
    QuavinClient::init(config);
    internal::diagnose([] { return "hidden"; });
    EXPECT_THAT(logger_->messages(), IsEmpty());
}

TEST_F(ClientLoggingTest, AScopeInstallsAndRemovesItsLogger) {
    {
        const QuavinClientInitTerm scope(configOf(logger_));
        report("within");
    }
    EXPECT_THAT(printed("after"), HasSubstr("after"));
    EXPECT_THAT(logger_->messages(), ElementsAre("within"));
}

}  // namespace
}  // namespace VelmoraQuavin
