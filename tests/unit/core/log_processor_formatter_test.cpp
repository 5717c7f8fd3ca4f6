#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <stdexcept>

#include "quavin/logging.h"
#include "support/recording_log_processor.h"

namespace VelmoraQuavin {
namespace {

using ::testing::ElementsAre;
using testing::RecordingLogProcessor;
using DebugFormatter = LogProcessorFormatter<DebugLogFormat>;

struct FailingFormat {
    static LogRecord format(const LogRecord& /*record*/, long long /*startTime*/) {
        throw std::runtime_error("cannot format");
    }
};

class CountingFailingLogProcessor : public ILogProcessor {
public:
    void process(const LogRecord& /*record*/) override {
        ++calls_;
        throw std::runtime_error("cannot process");
    }
    int calls() const { return calls_; }

private:
    int calls_ = 0;
};

LogRecord messageAt(long long time) {
    LogRecord record;
    record.message = "message";
    record.time = time;
    return record;
}

TEST(LogProcessorFormatterTest, PassesOnTheFormattedRecord) {
    const auto recorder = std::make_shared<RecordingLogProcessor>();
    DebugFormatter formatter(1'000, recorder);
    LogRecord record = messageAt(10'051'000);  // 1 second and 5 milliseconds later
    record.category = 4;
    record.level = 2;
    formatter.process(record);

    EXPECT_THAT(recorder->messages(), ElementsAre("(00:00:01:05) message[-1]"));
    EXPECT_EQ(recorder->records().front().category, 4U);
    EXPECT_EQ(recorder->records().front().level, 2U);
    EXPECT_EQ(recorder->records().front().time, 10'051'000);
}

TEST(LogProcessorFormatterTest, WritesTheSameLineToEveryStreamInOrder) {
    std::ostringstream first;
    std::ostringstream second;
    std::ostringstream both;
    const auto container = std::make_shared<LogProcessorContainer>();
    container->add(std::make_shared<LogProcessorOStream>(&first));
    container->add(std::make_shared<LogProcessorOStream>(&both));
    container->add(std::make_shared<LogProcessorOStream>(&second));
    container->add(std::make_shared<LogProcessorOStream>(&both));
    DebugFormatter(0, container).process(messageAt(110'450'060'000));

    const std::string line = "(03:04:05:06) message[-1]\n";
    EXPECT_EQ(first.str(), line);
    EXPECT_EQ(second.str(), line);
    EXPECT_EQ(both.str(), line + line);
}

TEST(LogProcessorFormatterTest, DoesNothingWithoutANextProcessor) {
    DebugFormatter formatter(0, nullptr);
    EXPECT_NO_THROW(formatter.process(messageAt(0)));
    LogProcessorFormatter<FailingFormat> failing(0, nullptr);
    EXPECT_NO_THROW(failing.process(messageAt(0)));
}

TEST(LogProcessorFormatterTest, PassesOnTheOriginalRecordIfFormattingFails) {
    const auto recorder = std::make_shared<RecordingLogProcessor>();
    LogProcessorFormatter<FailingFormat> formatter(0, recorder);
    formatter.process(messageAt(42));
    EXPECT_THAT(recorder->messages(), ElementsAre("message"));
    EXPECT_EQ(recorder->records().front().time, 42);
}

TEST(LogProcessorFormatterTest, AFailureOfTheNextProcessorIsNotMistakenForAFormattingFailure) {
    const auto failing = std::make_shared<CountingFailingLogProcessor>();
    DebugFormatter formatter(0, failing);
    EXPECT_THROW(formatter.process(messageAt(0)), std::runtime_error);
    EXPECT_EQ(failing->calls(), 1);
}

TEST(LogProcessorFormatterTest, SharesOwnershipOfTheNextProcessor) {
    auto recorder = std::make_shared<RecordingLogProcessor>();
    const std::weak_ptr<RecordingLogProcessor> watched = recorder;
    {
        const DebugFormatter formatter(0, recorder);
        recorder.reset();
        EXPECT_FALSE(watched.expired());
    }
    EXPECT_TRUE(watched.expired());
}

}  // namespace
}  // namespace VelmoraQuavin
