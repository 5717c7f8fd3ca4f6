#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace VelmoraQuavin::internal::platform {

/// Work to run in a separate process, which may die at any point. An exception ends that process
/// too.
/// @return the answer; an empty one counts as none.
using ChildWork = std::string (*)(std::string_view request);

/// The outcome of work done in a separate process.
struct ChildResult {
    std::string answer;   ///< Untrusted: the work may have lost control of its process.
    std::string problem;  ///< Human-readable: how the process ended; empty if it answered.
};

/// The longest request accepted, in bytes.
constexpr std::size_t kLargestChildRequest = std::size_t{256} << 10;
/// The longest answer accepted, in bytes.
constexpr std::size_t kLargestChildAnswer = std::size_t{64} << 20;

/// Runs work in a separate process and waits for it, however long it takes. The request never
/// appears in arguments, the environment or a file. The process ends with this one and leaves no
/// core dump if it crashes, and its output goes to standard error.
///
/// Call this before starting any thread: the process may begin as a copy of this one.
/// @throws std::runtime_error if the request is longer than kLargestChildRequest or no process can
///         be started.
ChildResult runInChild(ChildWork work, std::string_view request);

/// To be called at the start of main(): does the work if this process was started by runInChild()
/// in the same program.
/// @param work the work passed to runInChild().
/// @return the status to exit with; nothing in any other process.
std::optional<int> serveAsChild(ChildWork work);

}  // namespace VelmoraQuavin::internal::platform
