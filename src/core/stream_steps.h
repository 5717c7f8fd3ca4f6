#pragma once

#include <algorithm>
#include <ostream>

#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// The most that is passed to a file stream in one call: the C runtime of Windows counts in 32
/// bits.
constexpr uint64 kLargestStreamStep = uint64{1} << 30;

/// Writes `size` bytes; check the stream for failure.
inline void writeInSteps(std::ostream& stream, const char* data, uint64 size,
                         uint64 step = kLargestStreamStep) {
    uint64 written = 0;
    while (written < size && stream.good()) {
        const uint64 count = std::min(step, size - written);
        stream.write(data + written, static_cast<std::streamsize>(count));
        written += count;
    }
}

}  // namespace VelmoraQuavin::internal
