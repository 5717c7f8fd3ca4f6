#pragma once

#include <string_view>

#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// Whether a JSON text has more than `most` values, lists and objects included. Those after the
/// first syntax error may count.
bool hasMoreValues(std::string_view text, uint64 most);

}  // namespace VelmoraQuavin::internal
