#include "platform/process.h"

#include <sys/resource.h>
#include <unistd.h>

namespace VelmoraQuavin::internal::platform {

bool isTerminal(StandardStream stream) noexcept {
    return ::isatty(stream == StandardStream::kOutput ? STDOUT_FILENO : STDERR_FILENO) == 1;
}

std::uint64_t peakResidentMemory() noexcept {
    struct rusage usage {};
    if (::getrusage(RUSAGE_SELF, &usage) != 0) {
        return 0;
    }
    const auto peak = static_cast<std::uint64_t>(usage.ru_maxrss);
#if defined(__APPLE__)
    return peak;  // in bytes there
#else
    return peak * 1024;
#endif
}

}  // namespace VelmoraQuavin::internal::platform
