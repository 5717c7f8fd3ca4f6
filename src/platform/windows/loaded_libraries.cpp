#include "platform/loaded_libraries.h"

#include <windows.h>
// Needs windows.h first.
#include <psapi.h>

#include "platform/windows/wide_path.h"

namespace VelmoraQuavin::internal::platform {
namespace {

std::vector<HMODULE> modules() {
    std::vector<HMODULE> all(64);
    for (;;) {
        const auto size = static_cast<DWORD>(all.size() * sizeof(HMODULE));
        DWORD needed = 0;
        if (::K32EnumProcessModules(::GetCurrentProcess(), all.data(), size, &needed) == 0) {
            return {};
        }
        const bool complete = needed <= size;
        all.resize(needed / sizeof(HMODULE));
        if (complete) {
            return all;
        }
    }
}

}  // namespace

std::vector<std::string> loadedLibraries() {
    constexpr DWORD kLongestPath = 32768;
    std::wstring path(kLongestPath, L'\0');
    std::vector<std::string> files;
    for (const HMODULE module : modules()) {
        const DWORD length = ::GetModuleFileNameW(module, path.data(), kLongestPath);
        if (length != 0 && module != ::GetModuleHandleW(nullptr)) {
            files.push_back(utf8Text(std::wstring_view(path).substr(0, length)));
        }
    }
    return files;
}

}  // namespace VelmoraQuavin::internal::platform
