#include "platform/process.h"

#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>

namespace VelmoraQuavin::internal::platform {

std::vector<std::string> programArguments(int argc, const char* const* argv) {
    return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

std::optional<std::string> environmentVariable(const std::string& name) {
    const char* const value = std::getenv(name.c_str());
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

// Nothing to do: streams and terminals already behave this way.
OutputSession::OutputSession() noexcept = default;
OutputSession::~OutputSession() = default;

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
