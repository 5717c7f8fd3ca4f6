#include "core/logging_hub.h"

#include <cstddef>
#include <iostream>
#include <utility>

#include "platform/clock.h"

namespace VelmoraQuavin::internal {
namespace {

constexpr int kNestingLimit = 10;
constexpr std::size_t kHistoryLimit = 16;
constexpr std::uint64_t kImportantCategories = 0b11;
constexpr std::uint32_t kImportantLevel = 3;

bool isImportant(const LogRecord& record) {
    return (record.category & kImportantCategories) != 0 || record.level >= kImportantLevel;
}

class NestingGuard {
public:
    explicit NestingGuard(int& depth) : depth_(depth) { ++depth_; }
    NestingGuard(const NestingGuard&) = delete;
    NestingGuard& operator=(const NestingGuard&) = delete;
    ~NestingGuard() { --depth_; }

private:
    int& depth_;
};

}  // namespace

bool LoggingHub::everCreated_ = false;
bool LoggingHub::alive_ = false;

LoggingHub* LoggingHub::find() {
    if (everCreated_ && !alive_) {
        return nullptr;
    }
    static LoggingHub hub;
    return &hub;
}

LoggingHub::LoggingHub() {
    everCreated_ = true;
    alive_ = true;
}

LoggingHub::~LoggingHub() {
    alive_ = false;
}

void LoggingHub::setProcessor(std::shared_ptr<ILogProcessor> processor) {
    // Swapped first: the old processor may report or call back while being destroyed.
    processor_.swap(processor);
}

void LoggingHub::handle(const LogRecord& record) {
    const NestingGuard guard(nesting_);
    if (nesting_ >= kNestingLimit) {
        return;
    }
    if (isImportant(record)) {
        remember(record);
    }
    if (processor_ == nullptr) {
        processor_ = defaultProcessor();
    }
    // Kept alive here, since a processor may cause its own replacement while it runs.
    const std::shared_ptr<ILogProcessor> processor = processor_;
    try {
        processor->process(record);
    } catch (...) {
        // A failing processor must not disturb the code that reports.
    }
}

// Time stamps count from the first report that needs this processor.
const std::shared_ptr<ILogProcessor>& LoggingHub::defaultProcessor() {
    if (default_ == nullptr) {
        default_ = std::make_shared<LogProcessorFormatter<DebugLogFormat>>(
            platform::monotonicTicks(), std::make_shared<LogProcessorOStream>(&std::cout));
    }
    return default_;
}

void LoggingHub::remember(const LogRecord& record) {
    if (history_.size() > kHistoryLimit) {
        history_.pop_front();
    }
    history_.push_back(record.message);
}

}  // namespace VelmoraQuavin::internal
