#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace VelmoraQuavin::internal::platform {

/// What tools ask of the process they run as.

/// The program's arguments without its own name, as UTF-8 where the system has texts; elsewhere the
/// bytes that the caller gave.
/// @param argc as main() gets it.
/// @param argv as main() gets it.
std::vector<std::string> programArguments(int argc, const char* const* argv);

/// A variable of the environment, in the same form; nothing where there is none of this name.
std::optional<std::string> environmentVariable(const std::string& name);

/// While it lives, standard output and error take UTF-8, keep bytes as they are written ("\n" stays
/// "\n"), and terminals obey escape sequences where they can. At its end terminals are as they
/// were. One at a time, made before anything is written.
class OutputSession {
public:
    OutputSession() noexcept;
    OutputSession(const OutputSession&) = delete;
    OutputSession& operator=(const OutputSession&) = delete;
    // Where it has nothing to restore, it still is one type.
    ~OutputSession();  // NOLINT(performance-trivially-destructible)
};

enum class StandardStream { kOutput, kError };

/// Whether somebody looks at a standard stream in a terminal, one that obeys escape sequences where
/// that can be asked. Wants an OutputSession.
bool isTerminal(StandardStream stream) noexcept;

/// The most memory that the process has held so far, in bytes; 0 where the system does not tell.
std::uint64_t peakResidentMemory() noexcept;

}  // namespace VelmoraQuavin::internal::platform
