#pragma once

#include <cstddef>

#include "platform/secure_memory.h"

namespace VelmoraQuavin::internal {

/// Overwrites a secret in a way that the compiler cannot optimise away.
inline void secureWipe(void* bytes, std::size_t count) noexcept {
    platform::wipeMemory(bytes, count);
}

/// Overwrites memory, which it does not own, when the scope ends, even if by an exception.
class WipeOnExit {
public:
    WipeOnExit(void* bytes, std::size_t count) noexcept : bytes_(bytes), count_(count) {}
    WipeOnExit(const WipeOnExit&) = delete;
    WipeOnExit& operator=(const WipeOnExit&) = delete;
    ~WipeOnExit() { secureWipe(bytes_, count_); }

private:
    void* bytes_;
    std::size_t count_;
};

}  // namespace VelmoraQuavin::internal
