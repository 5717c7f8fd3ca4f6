#include "package/sized_file.h"

#include <cstring>
#include <utility>

#include "core/stream_steps.h"
#include "platform/file_streams.h"
#include "quavin/status.h"

namespace VelmoraQuavin::internal {

SizedFile::SizedFile(std::ifstream stream, uint64 size) : stream_(std::move(stream)), size_(size) {}

std::optional<SizedFile> SizedFile::tryOpen(const Filepath& path) {
    std::ifstream stream = platform::openFileAtEnd(path.c_str());
    if (!stream.is_open()) {
        return std::nullopt;
    }
    const auto end = static_cast<std::streamoff>(stream.tellg());
    if (end < 0) {
        return std::nullopt;  // a pipe, say
    }
    return SizedFile(std::move(stream), static_cast<uint64>(end));
}

SizedFile SizedFile::open(const Filepath& path) {
    std::optional<SizedFile> file = tryOpen(path);
    if (!file.has_value()) {
        throw FileException("File error!");
    }
    return std::move(*file);
}

void SizedFile::read(char* buffer) {
    stream_.seekg(0, std::ios::beg);
    const uint64 got = readInSteps(stream_, buffer, size_);
    if (got < size_) {
        std::memset(buffer + got, 0, size_ - got);
    }
}

}  // namespace VelmoraQuavin::internal
