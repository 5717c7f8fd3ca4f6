#include <ostream>
#include <utility>

#include "quavin/logging.h"
#include "text/unicode.h"

namespace VelmoraQuavin {

ILogProcessor::~ILogProcessor() = default;

LogProcessorOStream::LogProcessorOStream(std::ostream* stream) : stream_(stream) {}

LogProcessorOStream::~LogProcessorOStream() = default;

void LogProcessorOStream::process(const LogRecord& record) {
    if (stream_ != nullptr) {
        *stream_ << internal::untilZeroByte(record.message.view()) << std::endl;
    }
}

LogProcessorContainer::LogProcessorContainer() = default;

LogProcessorContainer::LogProcessorContainer(
    std::vector<std::shared_ptr<ILogProcessor>> processors) {
    for (std::shared_ptr<ILogProcessor>& processor : processors) {
        add(std::move(processor));
    }
}

LogProcessorContainer::~LogProcessorContainer() = default;

void LogProcessorContainer::add(std::shared_ptr<ILogProcessor> processor) {
    if (processor != nullptr) {
        processors_.push_back(std::move(processor));
    }
}

void LogProcessorContainer::process(const LogRecord& record) {
    for (const std::shared_ptr<ILogProcessor>& processor : processors_) {
        processor->process(record);
    }
}

}  // namespace VelmoraQuavin
