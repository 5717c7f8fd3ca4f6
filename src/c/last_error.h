#pragma once

#include "quavin/c.h"
#include "quavin/status.h"

namespace VelmoraQuavin::internal {

/// Keeps this thread's last error, in memory that a thread has from its first failure on. Longer
/// texts are cut at a character's boundary.
void setLastError(const char* text) noexcept;

/// Keeps the text of a status that is not a success, or its code's name if it has none.
/// @return the code.
quavin_status settle(const QuavinStatus& status) noexcept;
/// The same for the exception that is being handled, even if there is no memory for its text.
quavin_status settleCurrentException() noexcept;

}  // namespace VelmoraQuavin::internal
