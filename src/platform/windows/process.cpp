#include "platform/process.h"

#include <windows.h>
// Behind windows.h, which it needs.
#include <fcntl.h>
#include <io.h>
#include <psapi.h>
#include <shellapi.h>

#include <array>
#include <cstdio>
#include <memory>
#include <new>

#include "platform/secure_memory.h"
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

// Of a variable's value, which may be a key.
constexpr DWORD kUsualLength = 256;

void wipe(std::wstring& value) {
    wipeMemory(value.data(), value.size() * sizeof(wchar_t));
}

}  // namespace

// From the system's own text: what main() gets has lost the letters that one code page lacks.
std::vector<std::string> programArguments(int /*argc*/, const char* const* /*argv*/) {
    int count = 0;
    const std::unique_ptr<wchar_t*, decltype(&::LocalFree)> all(
        ::CommandLineToArgvW(::GetCommandLineW(), &count), &::LocalFree);
    std::vector<std::string> arguments;
    if (all == nullptr) {
        throw std::bad_alloc();
    }
    for (int i = 1; i < count; ++i) {
        arguments.push_back(utf8Text(all.get()[i]));
    }
    return arguments;
}

std::optional<std::string> environmentVariable(const std::string& name) {
    // The system's own: the C runtime's has lost the letters that one code page lacks.
    const std::wstring wide = widePath(name);
    std::wstring value;
    std::optional<std::string> text;
    for (DWORD size = kUsualLength; size > value.size();) {
        wipe(value);
        value.resize(size);
        ::SetLastError(ERROR_SUCCESS);
        size = ::GetEnvironmentVariableW(wide.c_str(), value.data(), size);
        if (size < value.size() && (size != 0 || ::GetLastError() == ERROR_SUCCESS)) {
            text = utf8Text(std::wstring_view(value).substr(0, size));
        }
    }
    wipe(value);
    return text;
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
