#include <iomanip>
#include <sstream>

#include "quavin/logging.h"

namespace VelmoraQuavin {
namespace {

constexpr long long kTicksPerMillisecond = 10'000;
constexpr long long kTicksPerSecond = 1'000 * kTicksPerMillisecond;
constexpr long long kTicksPerMinute = 60 * kTicksPerSecond;
constexpr long long kTicksPerHour = 60 * kTicksPerMinute;

}  // namespace

LogRecord DebugLogFormat::format(const LogRecord& record, long long startTime) {
    const long long elapsed = record.time - startTime;
    const auto twoDigits = std::setw(2);

    std::ostringstream message;
    message.imbue(std::locale::classic());
    message << std::setfill('0') << '(' << twoDigits << elapsed / kTicksPerHour << ':' << twoDigits
            << elapsed % kTicksPerHour / kTicksPerMinute << ':' << twoDigits
            << elapsed % kTicksPerMinute / kTicksPerSecond << ':' << twoDigits
            << elapsed % kTicksPerSecond / kTicksPerMillisecond << ") " << record.message.view()
            << '[' << record.tag << ']';

    LogRecord formatted = record;
    formatted.message = message.str();
    return formatted;
}

}  // namespace VelmoraQuavin
