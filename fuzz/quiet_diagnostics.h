#pragma once

#include <memory>

#include "core/diagnostics.h"
#include "core/logging_hub.h"
#include "quavin/logging.h"

namespace quavin_fuzz {

/// Turns diagnostics on, since they quote hostile input, and drops the records. For the first run
/// of a target: an object of this class is static there.
struct QuietDiagnostics {
    QuietDiagnostics() {
        using VelmoraQuavin::internal::LoggingHub;
        LoggingHub::find()->setProcessor(std::make_shared<VelmoraQuavin::LogProcessorContainer>());
        VelmoraQuavin::internal::setDiagnostics(true);
    }
};

}  // namespace quavin_fuzz
