#pragma once

#include <cstdint>

namespace VelmoraQuavin::internal::platform {

/// What tools ask of the process they run as.

enum class StandardStream { kOutput, kError };

/// Whether somebody looks at a standard stream in a terminal.
bool isTerminal(StandardStream stream) noexcept;

/// The most memory that the process has held so far, in bytes; 0 where the system does not tell.
std::uint64_t peakResidentMemory() noexcept;

}  // namespace VelmoraQuavin::internal::platform
