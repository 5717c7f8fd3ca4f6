#include <windows.h>

#include <atomic>
#include <cstddef>
#include <optional>
#include <system_error>
#include <utility>

#include "failure.hpp"
#include "owner_only_windows.hpp"
#include "scratch_file.hpp"
#include "wiped_text.hpp"

namespace InferenceEngine::runtime {
namespace {

std::string lastProblem() {
    return std::system_category().message(static_cast<int>(::GetLastError()));
}

/** Calls something that fills in a text, with as much room as it asks for; empty if it fails. */
template <class Fill>
std::wstring filled(Fill fill) {
    std::wstring text(MAX_PATH, L'\0');
    for (;;) {
        const DWORD size = fill(text.data(), static_cast<DWORD>(text.size()));
        const bool fits = size < text.size();
        text.resize(size);
        if (fits) {
            return text;
        }
    }
}

/** The text in the code page that narrow paths are in, if it has all the characters. */
std::optional<std::string> inCodePage(const std::wstring& text) {
    const auto length = static_cast<int>(text.size());
    std::string narrow(text.size() * 4, '\0');  // in UTF-8, which is the longest, that many at most
    const int size = ::WideCharToMultiByte(CP_ACP, 0, text.data(), length, narrow.data(),
                                           static_cast<int>(narrow.size()), nullptr, nullptr);
    narrow.resize(static_cast<std::size_t>(size));
    std::wstring again(text.size() + 1, L'\0');
    const int back = ::MultiByteToWideChar(CP_ACP, 0, narrow.data(), size, again.data(),
                                           static_cast<int>(again.size()));
    again.resize(static_cast<std::size_t>(back));
    return size != 0 && again == text ? std::optional(narrow) : std::nullopt;
}

struct Directory {
    std::wstring wide;
    std::string narrow;
};

/** The directory for temporary files, ending with a separator. */
Directory scratchDirectory() {
    const std::wstring path =
        filled([](wchar_t* text, DWORD size) { return ::GetTempPathW(size, text); });
    if (path.empty()) {
        throw Failure(GENERAL_ERROR, "There is no directory for temporary files");
    }
    if (std::optional<std::string> narrow = inCodePage(path)) {
        return {path, *std::move(narrow)};
    }
    const std::wstring shorter = filled(
        [&](wchar_t* text, DWORD size) { return ::GetShortPathNameW(path.c_str(), text, size); });
    if (std::optional<std::string> narrow = inCodePage(shorter)) {
        return {shorter, *std::move(narrow)};
    }
    throw Failure(NOT_IMPLEMENTED,
                  "Networks can't be exported here: the runtime takes paths in the system's code "
                  "page, which lacks characters of the directory for temporary files");
}

/** A name that no other scratch file of this process has. */
std::string newName() {
    static std::atomic<unsigned> count{0};
    return "quavin-" + std::to_string(::GetCurrentProcessId()) + "-" + std::to_string(count++) +
           ".tmp";
}

class OwnedHandle {
public:
    explicit OwnedHandle(HANDLE handle)
        : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
    OwnedHandle(const OwnedHandle&) = delete;
    OwnedHandle& operator=(const OwnedHandle&) = delete;
    ~OwnedHandle() {
        if (handle_ != nullptr) {
            ::CloseHandle(handle_);
        }
    }

    explicit operator bool() const noexcept { return handle_ != nullptr; }
    HANDLE get() const noexcept { return handle_; }

private:
    HANDLE handle_;
};

}  // namespace

class ScratchFile::Impl {
public:
    Impl() {
        const Directory directory = scratchDirectory();
        OwnerOnly rights;
        DWORD problem = ERROR_FILE_EXISTS;  // left behind by a process with the same number
        while (problem == ERROR_FILE_EXISTS) {
            const std::string name = newName();
            path_ = directory.narrow + name;
            wide_ = directory.wide + std::wstring(name.begin(), name.end());
            const OwnedHandle created(::CreateFileW(wide_.c_str(), GENERIC_WRITE, 0, rights.get(),
                                                    CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
            problem = created ? ERROR_SUCCESS : ::GetLastError();
        }
        if (problem != ERROR_SUCCESS) {
            throw Failure(GENERAL_ERROR,
                          "No temporary file can be created: " +
                              std::system_category().message(static_cast<int>(problem)));
        }
    }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    // Also maps what nobody asked for, after a failed export for example, just to overwrite it.
    ~Impl() {
        map();
        if (memory_ != nullptr) {
            wipe(memory_, size_);
            ::UnmapViewOfFile(memory_);
        }
        ::DeleteFileW(wide_.c_str());
    }

    const std::string& path() const noexcept { return path_; }

    std::string_view content() {
        if (!map()) {
            throw Failure(GENERAL_ERROR, "The exported network can't be read: " + lastProblem());
        }
        return {static_cast<const char*>(memory_), size_};
    }

private:
    /** Returns whether it worked; an empty file has no memory. */
    bool map() noexcept {
        if (memory_ != nullptr) {
            return true;
        }
        // Only until the view is there, so that an empty file can still be written to.
        const OwnedHandle file(::CreateFileW(wide_.c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                             nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                                             nullptr));
        LARGE_INTEGER size{};
        if (!file || ::GetFileSizeEx(file.get(), &size) == 0) {
            return false;
        }
        if (size.QuadPart == 0) {
            return true;
        }
        const OwnedHandle mapping(
            ::CreateFileMappingW(file.get(), nullptr, PAGE_READWRITE, 0, 0, nullptr));
        if (!mapping) {
            return false;
        }
        memory_ = ::MapViewOfFile(mapping.get(), FILE_MAP_READ | FILE_MAP_WRITE, 0, 0, 0);
        size_ = memory_ == nullptr ? 0 : static_cast<std::size_t>(size.QuadPart);
        return memory_ != nullptr;
    }

    std::wstring wide_;
    std::string path_;
    void* memory_ = nullptr;
    std::size_t size_ = 0;
};

ScratchFile::ScratchFile() : impl_(std::make_unique<Impl>()) {}

ScratchFile::~ScratchFile() = default;

const std::string& ScratchFile::path() const noexcept {
    return impl_->path();
}

std::string_view ScratchFile::content() {
    return impl_->content();
}

}  // namespace InferenceEngine::runtime
