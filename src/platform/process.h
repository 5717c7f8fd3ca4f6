#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace VelmoraQuavin::internal::platform {

/// What tools need from the process they run in.

/// The program's arguments without its own name: in UTF-8 if the system passes text, otherwise the
/// caller's bytes unchanged.
/// @param argc as passed to main().
/// @param argv as passed to main().
std::vector<std::string> programArguments(int argc, const char* const* argv);

/// An environment variable, in the same form; nothing if it is not set.
std::optional<std::string> environmentVariable(const std::string& name);

/// During its lifetime, standard output and error take UTF-8, pass bytes through unchanged ("\n"
/// stays "\n"), and terminals obey escape sequences if they can. Its destructor restores the
/// terminals. Only one may exist at a time, created before anything is written.
class OutputSession {
public:
    OutputSession() noexcept;
    OutputSession(const OutputSession&) = delete;
    OutputSession& operator=(const OutputSession&) = delete;
    // Declared even where there is nothing to restore, so that the type is the same everywhere.
    ~OutputSession();  // NOLINT(performance-trivially-destructible)
};

enum class StandardStream { kOutput, kError };

/// Whether a standard stream is a terminal and, where the system can tell, one that obeys escape
/// sequences. Requires an OutputSession.
bool isTerminal(StandardStream stream) noexcept;

/// The peak resident memory of the process so far, in bytes; 0 if the system does not report it.
std::uint64_t peakResidentMemory() noexcept;

}  // namespace VelmoraQuavin::internal::platform
