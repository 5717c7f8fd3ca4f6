#pragma once

#include <cstdint>

namespace VelmoraQuavin::internal::platform {

/// The most bytes to read or write in one call. No system refuses this many; some refuse more, or
/// count in 32 bits.
constexpr std::uint64_t kLargestTransfer = std::uint64_t{1} << 30;

}  // namespace VelmoraQuavin::internal::platform
