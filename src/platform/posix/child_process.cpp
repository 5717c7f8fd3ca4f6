#include "platform/child_process.h"

#include <sys/resource.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>
#if defined(__linux__)
#include <sys/prctl.h>
#endif

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <stdexcept>
#include <utility>

#include "platform/child_answer.h"
#include "platform/posix/file_descriptor.h"
#include "platform/posix/whole_write.h"

namespace VelmoraQuavin::internal::platform {
namespace {

constexpr int kNoAnswer = 1;

[[noreturn]] void throwStartProblem() {
    throw std::runtime_error(problemText("No process can be started", errno));
}

// A crash must be visible as such, whatever signal handlers the program has installed, and must
// leave nothing on disk: the crashed process may hold a key.
void prepareForCrash() noexcept {
    for (const int signal : {SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV}) {
        static_cast<void>(std::signal(signal, SIG_DFL));
    }
    const struct rlimit none {};
    static_cast<void>(::setrlimit(RLIMIT_CORE, &none));
#if defined(__linux__)
    // The limit does not apply to core dumps piped to a program.
    static_cast<void>(::prctl(PR_SET_DUMPABLE, 0));
#endif
}

void endWithParent(pid_t parent) noexcept {
#if defined(__linux__)
    static_cast<void>(::prctl(PR_SET_PDEATHSIG, SIGKILL));
#endif
    if (::getppid() != parent) {
        ::_exit(kNoAnswer);  // the parent has already ended
    }
}

[[noreturn]] void serve(ChildWork work, std::string_view request, int pipe, pid_t parent) noexcept {
    endWithParent(parent);
    prepareForCrash();
    // Keeps output of libraries from mixing with the program's results.
    if (pipe != STDOUT_FILENO) {
        static_cast<void>(::dup2(STDERR_FILENO, STDOUT_FILENO));
    }
    const std::string answer = work(request);
    const bool written = writeWhole(pipe, answer.data(), answer.size());
    // Everything else the program has set up is left for the parent to clean up.
    ::_exit(written ? 0 : kNoAnswer);
}

std::string readAnswer(int pipe) {
    return collectAnswer([pipe](char* buffer, std::size_t size) {
        const ssize_t count = readSome(pipe, buffer, size);
        return count > 0 ? static_cast<std::size_t>(count) : 0;
    });
}

int waitFor(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

std::string describeEnd(int status) {
    if (!WIFSIGNALED(status)) {
        return "ended with status " + std::to_string(WEXITSTATUS(status)) + " and no answer";
    }
    const int signal = WTERMSIG(status);
    std::string text =
        "was ended by signal " + std::to_string(signal) + " (" + ::strsignal(signal) + ")";
    if (signal == SIGKILL) {
        text += ", as happens when the system runs out of memory";
    }
    return text;
}

}  // namespace

ChildResult runInChild(ChildWork work, std::string_view request) {
    requireShortRequest(request);
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) {
        throwStartProblem();
    }
    FileDescriptor reading(ends[0]);
    FileDescriptor writing(ends[1]);
    // Otherwise buffered output would be written twice.
    std::cout.flush();
    static_cast<void>(std::fflush(nullptr));
    // This program may have been started with SIGCHLD ignored: the child would leave no status.
    static_cast<void>(std::signal(SIGCHLD, SIG_DFL));
    const pid_t self = ::getpid();
    const pid_t child = ::fork();
    if (child < 0) {
        throwStartProblem();
    }
    if (child == 0) {
        reading.close();
        serve(work, request, writing.get(), self);
    }
    writing.close();
    std::string answer = readAnswer(reading.get());
    if (isEndless(answer)) {
        static_cast<void>(::kill(child, SIGKILL));
    }
    const int status = waitFor(child);
    const bool succeeded = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    return resultOf(std::move(answer), succeeded, describeEnd(status));
}

// Nothing to do: fork() starts the child in the middle of runInChild().
std::optional<int> serveAsChild(ChildWork /*work*/) {
    return std::nullopt;
}

}  // namespace VelmoraQuavin::internal::platform
