#pragma once

#include <cstddef>
#include <utility>

namespace VelmoraQuavin::internal::platform {

/// The bytes of a regular file, mapped read-only into memory. InputFile::map() makes it; it needs
/// neither the InputFile nor, on POSIX systems, the file's name any more.
///
/// Memory and file are the same bytes: what others write into the file appears here, and reading
/// what is beyond the end of a file that has been cut ends the process. Windows does not let a file
/// be cut while it is mapped.
class MappedFile {
public:
    /// Maps nothing.
    MappedFile() = default;
    /// Takes over a mapping that the system has made.
    MappedFile(const char* data, std::size_t size) noexcept : data_(data), size_(size) {}
    MappedFile(MappedFile&& other) noexcept
        : data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0)) {}
    MappedFile& operator=(MappedFile&& other) noexcept {
        std::swap(data_, other.data_);
        std::swap(size_, other.size_);
        return *this;
    }
    ~MappedFile();

    /// The first byte, at the beginning of a page; null if the file is empty.
    const char* data() const { return data_; }
    std::size_t size() const { return size_; }

private:
    const char* data_ = nullptr;
    std::size_t size_ = 0;
};

}  // namespace VelmoraQuavin::internal::platform
