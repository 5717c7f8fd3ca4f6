#include "platform/directory_listing.h"

#include <windows.h>

#include <memory>
#include <type_traits>
#include <utility>

#include "platform/windows/file_handle.h"
#include "platform/windows/wide_path.h"

namespace VelmoraQuavin::internal::platform {
namespace {

struct CloseSearch {
    void operator()(HANDLE search) const noexcept { ::FindClose(search); }
};

}  // namespace

std::string listDirectory(const String& path, std::vector<std::string>& names) {
    const std::wstring pattern = widePath(path) + L"\\*";
    WIN32_FIND_DATAW entry{};
    HANDLE first = ::FindFirstFileW(pattern.c_str(), &entry);
    if (first == INVALID_HANDLE_VALUE) {
        return problemText("cannot be listed", ::GetLastError());
    }
    const std::unique_ptr<std::remove_pointer_t<HANDLE>, CloseSearch> search(first);
    do {
        std::string name = utf8Text(static_cast<const wchar_t*>(entry.cFileName));
        if (name != "." && name != "..") {
            names.push_back(std::move(name));
        }
    } while (::FindNextFileW(search.get(), &entry) != 0);
    const DWORD error = ::GetLastError();
    return error == ERROR_NO_MORE_FILES ? "" : problemText("cannot be listed", error);
}

}  // namespace VelmoraQuavin::internal::platform
