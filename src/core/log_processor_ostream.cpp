#include <ostream>

#include "quavin/logging.h"
#include "text/unicode.h"

namespace VelmoraQuavin {

LogProcessorOStream::LogProcessorOStream(std::ostream* stream) : stream_(stream) {}

LogProcessorOStream::~LogProcessorOStream() = default;

void LogProcessorOStream::process(const LogRecord& record) {
    if (stream_ != nullptr) {
        *stream_ << internal::untilZeroByte(record.message.view()) << std::endl;
    }
}

}  // namespace VelmoraQuavin
