#include "core/logging_hub.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "hub_fixture.h"

namespace VelmoraQuavin::internal {
namespace {

using ::testing::ElementsAre;

/// Reports again from within every record it receives.
class NestingLogProcessor : public ILogProcessor {
public:
    void process(const LogRecord& /*record*/) override {
        ++depth_;
        deepest_ = depth_ > deepest_ ? depth_ : deepest_;
        ++calls_;
        _Report_(false, 1, 0, "nested " + std::to_string(depth_));
        --depth_;
    }
    int deepest() const { return deepest_; }
    int calls() const { return calls_; }

private:
    int depth_ = 0;
    int deepest_ = 0;
    int calls_ = 0;
};

class ThrowingLogProcessor : public ILogProcessor {
public:
    void process(const LogRecord& record) override {
        if (record.message == "standard") {
            throw std::runtime_error("no");
        }
        throw 42;
    }
};

/// Removes itself from the hub while processing a record, and carries on.
class LeavingLogProcessor : public ILogProcessor {
public:
    explicit LeavingLogProcessor(std::string& seen) : seen_(seen) {}
    void process(const LogRecord& record) override {
        LoggingHub::find()->setProcessor(nullptr);
        seen_ = text_ + record.message.str();
    }

private:
    std::string text_ = "a text that is long enough to live on the heap: ";
    std::string& seen_;
};

class ReportingWhenDestroyed : public ILogProcessor {
public:
    ~ReportingWhenDestroyed() override { _Report_(false, 0, 0, "destroyed"); }
    void process(const LogRecord& /*record*/) override {}
};

class LoggingHubTest : public HubFixture {};

TEST_F(LoggingHubTest, ThereIsOneHubPerProcess) {
    EXPECT_NE(LoggingHub::find(), nullptr);
    EXPECT_EQ(LoggingHub::find(), LoggingHub::find());
}

TEST_F(LoggingHubTest, PassesRecordsToTheInstalledProcessor) {
    report("first");
    report("second");
    EXPECT_THAT(recorder_->messages(), ElementsAre("first", "second"));
}

TEST_F(LoggingHubTest, AReplacedProcessorGetsNoFurtherRecords) {
    const auto other = std::make_shared<testing::RecordingLogProcessor>();
    report("first");
    install(other);
    report("second");
    EXPECT_THAT(recorder_->messages(), ElementsAre("first"));
    EXPECT_THAT(other->messages(), ElementsAre("second"));
}

TEST_F(LoggingHubTest, ReleasesAReplacedProcessor) {
    const std::weak_ptr<ILogProcessor> watched = recorder_;
    recorder_.reset();
    EXPECT_FALSE(watched.expired());
    install(nullptr);
    EXPECT_TRUE(watched.expired());
}

TEST_F(LoggingHubTest, SwallowsWhateverAProcessorThrows) {
    install(std::make_shared<ThrowingLogProcessor>());
    EXPECT_NO_THROW(report("standard"));
    EXPECT_NO_THROW(report("a number"));
}

TEST_F(LoggingHubTest, KeepsWorkingAfterManyFailures) {
    install(std::make_shared<ThrowingLogProcessor>());
    for (int count = 0; count < 30; ++count) {
        report("standard");
    }
    install(recorder_);
    report("still heard");
    EXPECT_THAT(recorder_->messages(), ElementsAre("still heard"));
}

TEST_F(LoggingHubTest, NestsAtMostNineReports) {
    const auto nesting = std::make_shared<NestingLogProcessor>();
    install(nesting);
    report("outermost");
    EXPECT_EQ(nesting->deepest(), 9);
    EXPECT_EQ(nesting->calls(), 9);
}

TEST_F(LoggingHubTest, TheNestingCountRestartsWithEveryReport) {
    const auto nesting = std::make_shared<NestingLogProcessor>();
    install(nesting);
    report("first");
    report("second");
    EXPECT_EQ(nesting->deepest(), 9);
    EXPECT_EQ(nesting->calls(), 18);
}

TEST_F(LoggingHubTest, ADroppedReportIsNotRemembered) {
    install(std::make_shared<NestingLogProcessor>());
    report("outermost");
    EXPECT_EQ(history().back(), "nested 8");
}

TEST_F(LoggingHubTest, AProcessorMayReplaceItselfWhileProcessing) {
    std::string seen;
    install(std::make_shared<LeavingLogProcessor>(seen));
    report("message");
    EXPECT_EQ(seen, "a text that is long enough to live on the heap: message");
}

TEST_F(LoggingHubTest, AProcessorMayReportWhileBeingDestroyed) {
    install(std::make_shared<ReportingWhenDestroyed>());
    install(recorder_);
    EXPECT_THAT(recorder_->messages(), ElementsAre("destroyed"));
}

}  // namespace
}  // namespace VelmoraQuavin::internal
