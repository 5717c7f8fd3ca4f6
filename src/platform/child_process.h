#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace VelmoraQuavin::internal::platform {

/// Work for a process of its own, which may end at any point of it. Whatever it throws ends that
/// process too.
/// @return the answer; an empty one counts as none.
using ChildWork = std::string (*)(std::string_view request);

/// What came of work in a process of its own.
struct ChildResult {
    std::string answer;   ///< Not to be trusted: the work may have lost control of its process.
    std::string problem;  ///< How the process ended instead, for people; empty where it answered.
};

/// The longest request, in bytes.
constexpr std::size_t kLargestChildRequest = std::size_t{256} << 10;
/// Nor does anybody answer more than this.
constexpr std::size_t kLargestChildAnswer = std::size_t{64} << 20;

/// Does work in a process of its own and waits for it, however long it takes. The request never
/// shows in arguments, the environment or a file. The process ends with this one, writes no memory
/// image when it crashes, and what it prints goes to standard error.
///
/// Call it before any thread was started: the process may begin as a copy of this one.
/// @throws std::runtime_error if the request is longer than kLargestChildRequest or no process can
///         be started.
ChildResult runInChild(ChildWork work, std::string_view request);

/// For the beginning of main(): if runInChild() of this very program has started the process, does
/// the work.
/// @param work the same that runInChild() is given.
/// @return the status to end with; nothing in all other processes.
std::optional<int> serveAsChild(ChildWork work);

}  // namespace VelmoraQuavin::internal::platform
