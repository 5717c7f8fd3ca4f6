#include "platform/loaded_library.h"

#include <windows.h>

#include <string>

#include "platform/windows/wide_path.h"

namespace VelmoraQuavin::internal::platform {

std::optional<std::filesystem::path> directoryOfLibrary(std::string_view name) {
    const std::wstring fileName = widePath(std::string(name) + ".dll");
    HMODULE library = nullptr;
    if (::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT, fileName.c_str(),
                             &library) == 0) {
        return std::nullopt;
    }
    std::wstring path(32768, L'\0');  // the longest there is
    const DWORD length =
        ::GetModuleFileNameW(library, path.data(), static_cast<DWORD>(path.size()));
    path.resize(length);
    return length == 0 ? std::nullopt : std::optional(std::filesystem::path(path).parent_path());
}

}  // namespace VelmoraQuavin::internal::platform
