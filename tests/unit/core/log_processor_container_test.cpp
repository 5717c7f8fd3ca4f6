#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "quavin/logging.h"
#include "support/recording_log_processor.h"

namespace VelmoraQuavin {
namespace {

using ::testing::ElementsAre;
using testing::RecordingLogProcessor;

LogRecord recordOf(const char* message) {
    LogRecord record;
    record.message = message;
    return record;
}

class NamedLogProcessor : public ILogProcessor {
public:
    NamedLogProcessor(std::string name, std::vector<std::string>& calls)
        : name_(std::move(name)), calls_(calls) {}
    void process(const LogRecord& record) override {
        calls_.push_back(name_ + " " + record.message.str());
    }

private:
    std::string name_;
    std::vector<std::string>& calls_;
};

class FailingLogProcessor : public ILogProcessor {
public:
    void process(const LogRecord& /*record*/) override { throw std::runtime_error("no"); }
};

TEST(LogProcessorContainerTest, AnEmptyContainerDoesNothing) {
    LogProcessorContainer container;
    EXPECT_NO_THROW(container.process(recordOf("message")));
}

TEST(LogProcessorContainerTest, PassesRecordsOnInTheOrderAdded) {
    std::vector<std::string> calls;
    LogProcessorContainer container;
    container.add(std::make_shared<NamedLogProcessor>("first", calls));
    container.add(std::make_shared<NamedLogProcessor>("second", calls));
    container.process(recordOf("a"));
    container.process(recordOf("b"));
    EXPECT_THAT(calls, ElementsAre("first a", "second a", "first b", "second b"));
}

TEST(LogProcessorContainerTest, AcceptsAListOfProcessors) {
    std::vector<std::string> calls;
    LogProcessorContainer container({std::make_shared<NamedLogProcessor>("first", calls),
                                     std::make_shared<NamedLogProcessor>("second", calls)});
    container.process(recordOf("a"));
    EXPECT_THAT(calls, ElementsAre("first a", "second a"));
}

TEST(LogProcessorContainerTest, PassesTheRecordOnUnchanged) {
    const auto recorder = std::make_shared<RecordingLogProcessor>();
    LogProcessorContainer container({recorder});
    LogRecord record;
    record.message = String("a\0b", 3);
    record.category = std::numeric_limits<std::uint64_t>::max();
    record.level = 7;
    record.tag = 42;
    record.time = 123;
    container.process(record);

    ASSERT_EQ(recorder->records().size(), 1U);
    const LogRecord& received = recorder->records().front();
    EXPECT_EQ(received.message, record.message);
    EXPECT_EQ(received.category, record.category);
    EXPECT_EQ(received.level, 7U);
    EXPECT_EQ(received.tag, 42);
    EXPECT_EQ(received.time, 123);
}

TEST(LogProcessorContainerTest, AProcessorAddedTwiceIsCalledTwice) {
    const auto recorder = std::make_shared<RecordingLogProcessor>();
    LogProcessorContainer container({recorder, recorder});
    container.process(recordOf("a"));
    EXPECT_THAT(recorder->messages(), ElementsAre("a", "a"));
}

TEST(LogProcessorContainerTest, IgnoresNullProcessors) {
    const auto recorder = std::make_shared<RecordingLogProcessor>();
    LogProcessorContainer container({nullptr, recorder, nullptr});
    container.add(nullptr);
    container.process(recordOf("a"));
    EXPECT_THAT(recorder->messages(), ElementsAre("a"));
}

TEST(LogProcessorContainerTest, AThrowingProcessorKeepsTheRecordFromTheRest) {
    const auto before = std::make_shared<RecordingLogProcessor>();
    const auto after = std::make_shared<RecordingLogProcessor>();
    LogProcessorContainer container({before, std::make_shared<FailingLogProcessor>(), after});
    EXPECT_THROW(container.process(recordOf("a")), std::runtime_error);
    EXPECT_THAT(before->messages(), ElementsAre("a"));
    EXPECT_THAT(after->messages(), ElementsAre());
}

TEST(LogProcessorContainerTest, SharesOwnershipOfItsProcessors) {
    auto recorder = std::make_shared<RecordingLogProcessor>();
    const std::weak_ptr<RecordingLogProcessor> watched = recorder;
    {
        const LogProcessorContainer container({recorder});
        recorder.reset();
        EXPECT_FALSE(watched.expired());
    }
    EXPECT_TRUE(watched.expired());
}

}  // namespace
}  // namespace VelmoraQuavin
