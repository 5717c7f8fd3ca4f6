#include "platform/file_streams.h"

#include "platform/posix/native_path.h"

namespace VelmoraQuavin::internal::platform {

std::fstream openFile(const String& path, std::ios::openmode mode) {
    return std::fstream(nativeUtf8Path(path), mode);
}

std::ifstream openFileAtEnd(const String& path) {
    const std::string native = nativeUtf8Path(path);
    if (isSpecial(native)) {
        // A stream opens a directory and then reports an absurd size, and waits for a pipe's
        // writer.
        return {};
    }
    return std::ifstream(native, std::ios::binary | std::ios::ate);
}

std::ofstream openFileForWriting(const String& path, std::ios::openmode mode) {
    return std::ofstream(nativeUtf8Path(path), mode | std::ios::trunc);
}

}  // namespace VelmoraQuavin::internal::platform
