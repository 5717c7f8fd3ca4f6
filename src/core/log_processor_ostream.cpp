#include <ostream>

#include "core/text_tools.h"
#include "quavin/logging.h"

namespace VelmoraQuavin {

LogProcessorOStream::LogProcessorOStream(std::ostream* stream) : stream_(stream) {}

LogProcessorOStream::~LogProcessorOStream() = default;

void LogProcessorOStream::process(const LogRecord& record) {
    if (stream_ != nullptr) {
        *stream_ << internal::untilZeroByte(record.message.view()) << std::endl;
    }
}

}  // namespace VelmoraQuavin
