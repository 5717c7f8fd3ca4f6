#include "platform/process.h"

#include <windows.h>
// Behind windows.h, which it needs.
#include <io.h>
#include <psapi.h>

#include <cstdio>

namespace VelmoraQuavin::internal::platform {

bool isTerminal(StandardStream stream) noexcept {
    return ::_isatty(::_fileno(stream == StandardStream::kOutput ? stdout : stderr)) != 0;
}

std::uint64_t peakResidentMemory() noexcept {
    PROCESS_MEMORY_COUNTERS counters{};
    return ::K32GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof counters) != 0
               ? counters.PeakWorkingSetSize
               : 0;
}

}  // namespace VelmoraQuavin::internal::platform
