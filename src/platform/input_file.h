#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/mapped_file.h"
#include "quavin/text.h"

namespace VelmoraQuavin::internal::platform {

/// A regular file that is read from its beginning to its end, once, or mapped into memory. Others
/// may read and write it at the same time. Use it from one thread at a time.
class InputFile {
public:
    /// Opens a file, through the wide interface on Windows.
    /// @param path read up to its first zero byte.
    /// @param problem receives a human-readable reason on failure. Anything but a regular file (a
    ///     directory, pipe or device, for example) fails too, without blocking.
    /// @throws std::range_error "bad conversion" if the path is not UTF-8.
    static std::optional<InputFile> open(const String& path, std::string& problem);
    InputFile(InputFile&& other) noexcept;
    InputFile& operator=(InputFile&& other) noexcept;
    ~InputFile();

    /// The file's size when it was opened.
    std::uint64_t size() const { return size_; }
    /// Reads size() bytes, and no more even if the file has grown.
    /// @param got receives the number of bytes read: fewer than size() if the file has shrunk or
    ///     reading failed.
    /// @return a human-readable reason if reading failed; empty if it succeeded.
    std::string read(void* buffer, std::uint64_t& got) { return read(buffer, size_, got); }
    /// Reads the next `count` bytes.
    /// @param got receives the number of bytes read: fewer than `count` if the file ends before or
    ///     reading failed.
    /// @return a human-readable reason if reading failed; empty if it succeeded.
    std::string read(void* buffer, std::uint64_t count, std::uint64_t& got);
    /// Maps size() bytes. An empty file gives an empty range.
    /// @param problem receives a human-readable reason on failure.
    std::optional<MappedFile> map(std::string& problem) const;

    class Implementation;

private:
    InputFile(std::unique_ptr<Implementation> implementation, std::uint64_t size);

    std::unique_ptr<Implementation> implementation_;
    std::uint64_t size_;
};

}  // namespace VelmoraQuavin::internal::platform
