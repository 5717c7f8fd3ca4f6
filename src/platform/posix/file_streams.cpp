#include "platform/file_streams.h"

#include "platform/posix/native_path.h"

namespace VelmoraQuavin::internal::platform {
std::fstream openFile(const String& path, std::ios::openmode mode) {
    return std::fstream(nativeUtf8Path(path), mode);
}

std::ifstream openFileAtEnd(const String& path) {
    const std::string native = nativeUtf8Path(path);
    if (isDirectory(native)) {
        return {};  // a stream would open it and then report an absurd size
    }
    return std::ifstream(native, std::ios::binary | std::ios::ate);
}

std::ofstream openFileForWriting(const String& path, std::ios::openmode mode) {
    return std::ofstream(nativeUtf8Path(path), mode | std::ios::trunc);
}

}  // namespace VelmoraQuavin::internal::platform
