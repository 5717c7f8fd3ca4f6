#include <utility>

#include "quavin/logging.h"

namespace VelmoraQuavin {

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
