#include "platform/child_process.h"

#include <windows.h>
// Need windows.h first.
#include <fcntl.h>
#include <io.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "platform/child_answer.h"
#include "platform/process.h"
#include "platform/secure_memory.h"
#include "platform/windows/file_handle.h"
#include "platform/windows/wide_path.h"

namespace VelmoraQuavin::internal::platform {
namespace {

// The only argument of a process started to do work. Passed by hand, it makes the program wait for
// a request on standard input, which only runInChild() creates.
constexpr const char* kMark = "--work-for-parent";
constexpr int kNoAnswer = 1;

[[noreturn]] void throwStartProblem() {
    throw std::runtime_error(problemText("No process can be started", ::GetLastError()));
}

struct Pipe {
    FileHandle reading;
    FileHandle writing;
};

// @param ours the end that the child does not inherit.
Pipe makePipe(FileHandle Pipe::*ours) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    HANDLE reading = nullptr;
    HANDLE writing = nullptr;
    if (::CreatePipe(&reading, &writing, &inherited, 0) == 0) {
        throwStartProblem();
    }
    Pipe pipe{FileHandle(reading), FileHandle(writing)};
    if (::SetHandleInformation((pipe.*ours).get(), HANDLE_FLAG_INHERIT, 0) == 0) {
        throwStartProblem();
    }
    return pipe;
}

std::wstring ownProgram() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const auto size = static_cast<DWORD>(path.size());
        const DWORD length = ::GetModuleFileNameW(nullptr, path.data(), size);
        if (length == 0) {
            throwStartProblem();
        }
        if (length < size) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

// A job that ends with its last handle, and takes its processes with it.
HANDLE makeJob() {
    HANDLE job = ::CreateJobObjectW(nullptr, nullptr);
    if (job == nullptr) {
        return INVALID_HANDLE_VALUE;
    }
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags =
        JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE | JOB_OBJECT_LIMIT_DIE_ON_UNHANDLED_EXCEPTION;
    ::SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

FileHandle start(const FileHandle& input, const FileHandle& output, const FileHandle& job) {
    const std::wstring program = ownProgram();
    std::wstring command = L"\"" + program + L"\" " + widePath(kMark);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = input.get();
    startup.hStdOutput = output.get();
    startup.hStdError = ::GetStdHandle(STD_ERROR_HANDLE);
    ::SetHandleInformation(startup.hStdError, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    PROCESS_INFORMATION information{};
    if (::CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED,
                         nullptr, nullptr, &startup, &information) == 0) {
        throwStartProblem();
    }
    FileHandle process(information.hProcess);
    const FileHandle thread(information.hThread);
    // If this fails, the process may outlive a parent that is killed, but nothing worse.
    if (job) {
        ::AssignProcessToJobObject(job.get(), process.get());
    }
    ::ResumeThread(thread.get());
    return process;
}

// @return the number of bytes read; those that do not fit are left unread.
std::size_t readInto(HANDLE pipe, char* buffer, std::size_t capacity) {
    std::size_t size = 0;
    DWORD count = 0;
    while (size < capacity &&
           ::ReadFile(pipe, buffer + size, static_cast<DWORD>(capacity - size), &count, nullptr) !=
               0 &&
           count != 0) {
        size += count;
    }
    return size;
}

std::string readAnswer(HANDLE pipe) {
    return collectAnswer([pipe](char* buffer, std::size_t size) -> std::size_t {
        DWORD count = 0;
        const BOOL read = ::ReadFile(pipe, buffer, static_cast<DWORD>(size), &count, nullptr);
        return read != 0 ? count : 0;
    });
}

std::string describeEnd(DWORD status) {
    if (status < 0x80000000U) {
        return "ended with status " + std::to_string(status) + " and no answer";
    }
    constexpr std::array<std::pair<DWORD, const char*>, 6> kNames{
        {{0xC0000005U, " (access violation)"},
         {0xC0000017U, " (no memory)"},
         {0xC000001DU, " (illegal instruction)"},
         {0xC0000094U, " (division by zero)"},
         {0xC00000FDU, " (stack overflow)"},
         {0xC0000409U, " (fail fast)"}}};
    std::array<char, 16> number{};
    static_cast<void>(std::snprintf(number.data(), number.size(), "0x%08lX", status));
    std::string text = std::string("crashed with ") + number.data();
    for (const auto& [known, name] : kNames) {
        text += known == status ? name : "";
    }
    return text;
}

}  // namespace

ChildResult runInChild(ChildWork /*work*/, std::string_view request) {
    requireShortRequest(request);
    Pipe requests = makePipe(&Pipe::writing);
    Pipe answers = makePipe(&Pipe::reading);
    static_cast<void>(std::fflush(nullptr));
    const FileHandle job(makeJob());
    const FileHandle process = start(requests.reading, answers.writing, job);
    // So that each side notices when the other one has ended.
    requests.reading = FileHandle();
    answers.writing = FileHandle();
    // If this fails, the process has ended, which is detected below.
    writeWhole(requests.writing.get(), request.data(), request.size());
    requests.writing = FileHandle();

    std::string answer = readAnswer(answers.reading.get());
    if (isEndless(answer)) {
        ::TerminateProcess(process.get(), kNoAnswer);
    }
    ::WaitForSingleObject(process.get(), INFINITE);
    DWORD status = kNoAnswer;
    ::GetExitCodeProcess(process.get(), &status);
    return resultOf(std::move(answer), status == 0, describeEnd(status));
}

std::optional<int> serveAsChild(ChildWork work) {
    if (programArguments(0, nullptr) != std::vector<std::string>{kMark}) {
        return std::nullopt;
    }
    // No error dialog that someone would have to close: the parent notices a crash anyway.
    ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    std::string request(kLargestChildRequest, '\0');
    const std::size_t size =
        readInto(::GetStdHandle(STD_INPUT_HANDLE), request.data(), request.size());
    HANDLE pipe = nullptr;
    HANDLE self = ::GetCurrentProcess();
    if (::DuplicateHandle(self, ::GetStdHandle(STD_OUTPUT_HANDLE), self, &pipe, 0, FALSE,
                          DUPLICATE_SAME_ACCESS) == 0) {
        return kNoAnswer;
    }
    const FileHandle answers(pipe);
    // Keeps output of libraries from mixing with the program's results.
    ::_dup2(::_fileno(stderr), ::_fileno(stdout));
    const std::string answer = work(std::string_view(request).substr(0, size));
    wipeMemory(request.data(), request.size());
    const bool written = writeWhole(answers.get(), answer.data(), answer.size());
    static_cast<void>(std::fflush(nullptr));
    return written ? 0 : kNoAnswer;
}

}  // namespace VelmoraQuavin::internal::platform
