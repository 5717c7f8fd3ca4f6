#include <iostream>

#include "core/diagnostics.h"
#include "core/logging_hub.h"
#include "platform/clock.h"
#include "quavin/logging.h"

namespace VelmoraQuavin {

void _Report_(bool direct, std::size_t category, unsigned level, const String& message) {
    try {
        LogRecord record;
        record.message = message;
        record.category = category;
        record.level = level;
        record.time = internal::platform::monotonicTicks();

        const auto delivery = internal::lockDelivery();
        internal::LoggingHub* hub = direct ? nullptr : internal::LoggingHub::find();
        if (hub != nullptr) {
            hub->handle(record);
        } else {
            LogProcessorOStream(&std::cout).process(record);
        }
    } catch (...) {
        // There is nowhere to report that a report failed.
    }
}

}  // namespace VelmoraQuavin
