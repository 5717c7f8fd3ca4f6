#include <iomanip>
#include <locale>
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
    // Unsigned, since the times are arbitrary and the difference may wrap.
    const auto elapsed = static_cast<long long>(static_cast<unsigned long long>(record.time) -
                                                static_cast<unsigned long long>(startTime));
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
