#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "quavin/text.h"

namespace VelmoraQuavin::internal::platform {

/// A plain file that is read whole, once. Others may read and write it meanwhile. One thread at a
/// time.
class InputFile {
public:
    /// Opens a file through the system's widest interface.
    /// @param path read up to its first zero byte.
    /// @param problem receives, for people, why it failed; a directory, pipe, device or whatever
    ///     else is no plain file fails too, without waiting for anybody.
    /// @throws std::range_error "bad conversion" where the path is not UTF-8.
    static std::optional<InputFile> open(const String& path, std::string& problem);
    InputFile(InputFile&& other) noexcept;
    InputFile& operator=(InputFile&& other) noexcept;
    ~InputFile();

    /// The size that the file had when it was opened.
    std::uint64_t size() const { return size_; }
    /// Reads size() bytes, no more if the file has grown.
    /// @param got receives how many there were; fewer where the file has become shorter, or reading
    ///     has failed.
    /// @return why reading failed, for people; empty where it went well.
    std::string read(void* buffer, std::uint64_t& got);

private:
    class Implementation;

    InputFile(std::unique_ptr<Implementation> implementation, std::uint64_t size);

    std::unique_ptr<Implementation> implementation_;
    std::uint64_t size_;
};

}  // namespace VelmoraQuavin::internal::platform
