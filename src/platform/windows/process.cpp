#include "platform/process.h"

#include <windows.h>
// Need windows.h first.
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

// A console's original mode, to be restored.
struct Console {
    HANDLE handle = nullptr;  // null if the stream is not a console
    DWORD mode = 0;
};
std::array<Console, 2> changedConsoles;
UINT codePage = 0;

HANDLE handleOf(StandardStream stream) {
    return ::GetStdHandle(stream == StandardStream::kOutput ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

void useBinaryMode(FILE* stream) {
    const int descriptor = ::_fileno(stream);
    if (descriptor >= 0) {
        ::_setmode(descriptor, _O_BINARY);
    }
}

Console enableEscapes(StandardStream stream) {
    Console console{handleOf(stream), 0};
    if (::GetConsoleMode(console.handle, &console.mode) == 0) {
        return {};
    }
    // Unbuffered, each byte would go to the console separately, which breaks multi-byte characters.
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
    // Both may be the same console, and only the first saw its original mode.
    for (std::size_t i = changedConsoles.size(); i > 0; --i) {
        const Console& console = changedConsoles.at(i - 1);
        if (console.handle != nullptr) {
            ::SetConsoleMode(console.handle, console.mode);
        }
    }
}

// Ctrl-C ends the process, but does not undo its changes to the console.
BOOL WINAPI restoreAtBreak(DWORD /*event*/) {
    restoreConsoles();
    return FALSE;
}

// The usual length of an environment variable's value.
constexpr DWORD kUsualLength = 256;

// Wiped because the value of a variable may be a key.
void wipe(std::wstring& value) {
    wipeMemory(value.data(), value.size() * sizeof(wchar_t));
}

}  // namespace

// Uses the system's command line: main()'s arguments lack characters outside the code page.
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
    // Asks the system: the C runtime's copy lacks characters outside the code page.
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
    useBinaryMode(stdout);
    useBinaryMode(stderr);
    changedConsoles = {enableEscapes(StandardStream::kOutput),
                       enableEscapes(StandardStream::kError)};
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
