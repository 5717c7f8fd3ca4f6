#include "platform/process.h"

#include <windows.h>
// Behind windows.h, which it needs.
#include <fcntl.h>
#include <io.h>
#include <psapi.h>
#include <shellapi.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "platform/windows/wide_path.h"

namespace VelmoraQuavin::internal::platform {
namespace {

// What a console was like, to leave it so.
struct Console {
    HANDLE handle = nullptr;  // none: the stream goes elsewhere
    DWORD mode = 0;
};
std::array<Console, 2> changedConsoles;
UINT codePage = 0;

HANDLE handleOf(StandardStream stream) {
    return ::GetStdHandle(stream == StandardStream::kOutput ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

void keepBytes(FILE* stream) {
    const int descriptor = ::_fileno(stream);
    if (descriptor >= 0) {
        ::_setmode(descriptor, _O_BINARY);
    }
}

Console obeyEscapes(StandardStream stream) {
    Console console{handleOf(stream), 0};
    if (::GetConsoleMode(console.handle, &console.mode) == 0) {
        return {};
    }
    // Without a buffer each byte goes to the console by itself, and letters of several are lost.
    FILE* const file = stream == StandardStream::kOutput ? stdout : stderr;
    static_cast<void>(std::setvbuf(file, nullptr, _IOFBF, BUFSIZ));
    ::SetConsoleMode(console.handle,
                     console.mode | ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    return console;
}

void restoreConsoles() {
    if (codePage != 0) {
        ::SetConsoleOutputCP(codePage);
    }
    // Both may be the same console, which the first has found as it was.
    for (std::size_t i = changedConsoles.size(); i > 0; --i) {
        const Console& console = changedConsoles.at(i - 1);
        if (console.handle != nullptr) {
            ::SetConsoleMode(console.handle, console.mode);
        }
    }
}

// Ctrl-C ends the process, but not what it did to the console.
BOOL WINAPI restoreAtBreak(DWORD /*event*/) {
    restoreConsoles();
    return FALSE;
}

}  // namespace

// From the system's own text: what main() gets has lost the letters that one code page lacks.
std::vector<std::string> programArguments(int /*argc*/, const char* const* /*argv*/) {
    int count = 0;
    const std::unique_ptr<wchar_t*, decltype(&::LocalFree)> all(
        ::CommandLineToArgvW(::GetCommandLineW(), &count), &::LocalFree);
    std::vector<std::string> arguments;
    for (int i = 1; all != nullptr && i < count; ++i) {
        arguments.push_back(utf8Text(all.get()[i]));
    }
    return arguments;
}

std::optional<std::string> environmentVariable(const std::string& name) {
    const wchar_t* const value = ::_wgetenv(widePath(name).c_str());
    if (value == nullptr) {
        return std::nullopt;
    }
    return std::optional<std::string>(utf8Text(value));
}

OutputSession::OutputSession() noexcept {
    keepBytes(stdout);
    keepBytes(stderr);
    changedConsoles = {obeyEscapes(StandardStream::kOutput), obeyEscapes(StandardStream::kError)};
    for (const Console& console : changedConsoles) {
        if (console.handle != nullptr && codePage == 0) {
            codePage = ::GetConsoleOutputCP();
            ::SetConsoleOutputCP(CP_UTF8);
            ::SetConsoleCtrlHandler(restoreAtBreak, TRUE);
        }
    }
}

OutputSession::~OutputSession() {
    static_cast<void>(std::fflush(stdout));
    static_cast<void>(std::fflush(stderr));
    restoreConsoles();
    codePage = 0;
    changedConsoles = {};
    ::SetConsoleCtrlHandler(restoreAtBreak, FALSE);
}

bool isTerminal(StandardStream stream) noexcept {
    DWORD mode = 0;
    return ::GetConsoleMode(handleOf(stream), &mode) != 0 &&
           (mode & ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

std::uint64_t peakResidentMemory() noexcept {
    PROCESS_MEMORY_COUNTERS counters{};
    return ::K32GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof counters) != 0
               ? counters.PeakWorkingSetSize
               : 0;
}

}  // namespace VelmoraQuavin::internal::platform
