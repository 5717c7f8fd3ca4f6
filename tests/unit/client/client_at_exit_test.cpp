// The client while the process exits. Each body runs in its own process.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <memory>

#include "quavin/client.h"
#include "quavin/logging.h"
#include "support/at_exit.h"
#include "support/captured_output.h"
#include "support/recording_model.h"

namespace VelmoraQuavin {
namespace {

using ::testing::AllOf;
using ::testing::ExitedWithCode;
using ::testing::HasSubstr;
using ::testing::Not;

class PrintingLogProcessor : public ILogProcessor {
public:
    ~PrintingLogProcessor() override { _Report_(false, 0, 0, "logger destroyed"); }
    void process(const LogRecord& record) override {
        std::cerr << "logger: " << record.message << '\n';
    }
};

class PrintingModel : public testing::RecordingModel {
public:
    ~PrintingModel() override { std::cerr << "model destroyed\n"; }
};

QuavinConfig configOf(const std::shared_ptr<ILogProcessor>& logger) {
    QuavinConfig config;
    config.SetLogger(logger);
    return config;
}

void terminateAndReport() {
    QuavinClient::terminate();
    _Report_(false, 0, 0, "late");
    std::cerr << (QuavinClient::isInitialized() ? "on" : "off") << '\n';
}

[[noreturn]] void exitWithTerminateAfterTheHub() {
    testing::sendOutputToErrorStream();
    // Registered before the hub, so called after it is gone.
    testing::callAtExit(terminateAndReport);
    QuavinClient::init(configOf(std::make_shared<PrintingLogProcessor>()));
    std::exit(0);
}

[[noreturn]] void exitWithInitAfterTheHub() {
    testing::sendOutputToErrorStream();
    testing::callAtExit([] {
        QuavinClient::init(configOf(std::make_shared<PrintingLogProcessor>()));
        _Report_(false, 0, 0, "late");
    });
    _Report_(false, 0, 0, "early");
    std::exit(0);
}

[[noreturn]] void exitWithAStaticScope() {
    testing::sendOutputToErrorStream();
    static const QuavinClientInitTerm scope{QuavinConfig()};
    testing::callAtExit([] { _Report_(false, 0, 0, "late"); });
    _Report_(false, 0, 0, "early");
    std::exit(0);
}

[[noreturn]] void exitWithAModelRegistered() {
    QuavinClient::init(QuavinConfig());
    QuavinClient::instance().getModelManager().registerModel(std::make_shared<PrintingModel>());
    std::exit(0);
}

[[noreturn]] void exitSwitchedOffWithAModelRegistered() {
    QuavinClient::init(QuavinConfig());
    QuavinClient::instance().getModelManager().registerModel(std::make_shared<PrintingModel>());
    QuavinClient::terminate();
    std::exit(0);
}

class ClientAtExitDeathTest : public ::testing::Test {
protected:
    ClientAtExitDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(ClientAtExitDeathTest, TerminateAfterTheHubIsGoneSwitchesOff) {
    EXPECT_EXIT(exitWithTerminateAfterTheHub(), ExitedWithCode(0),
                AllOf(HasSubstr("late\noff\n"), Not(HasSubstr("logger: late"))));
}

TEST_F(ClientAtExitDeathTest, TheLoggerMayReportWhenDestroyedAtExit) {
    EXPECT_EXIT(exitWithTerminateAfterTheHub(), ExitedWithCode(0), HasSubstr("logger destroyed\n"));
}

TEST_F(ClientAtExitDeathTest, InitAfterTheHubIsGoneInstallsNothing) {
    EXPECT_EXIT(exitWithInitAfterTheHub(), ExitedWithCode(0),
                AllOf(HasSubstr("late\n"), Not(HasSubstr("logger: late"))));
}

TEST_F(ClientAtExitDeathTest, AStaticScopeEndsCleanly) {
    EXPECT_EXIT(exitWithAStaticScope(), ExitedWithCode(0), HasSubstr("late"));
}

TEST_F(ClientAtExitDeathTest, ARegisteredModelIsDestroyed) {
    EXPECT_EXIT(exitWithAModelRegistered(), ExitedWithCode(0), HasSubstr("model destroyed\n"));
}

TEST_F(ClientAtExitDeathTest, ARegisteredModelIsDestroyedEvenIfSwitchedOff) {
    EXPECT_EXIT(exitSwitchedOffWithAModelRegistered(), ExitedWithCode(0),
                HasSubstr("model destroyed\n"));
}

}  // namespace
}  // namespace VelmoraQuavin
