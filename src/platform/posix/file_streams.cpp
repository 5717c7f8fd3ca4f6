#include "platform/file_streams.h"

#include "platform/posix/native_path.h"

namespace VelmoraQuavin::internal::platform {

std::fstream openFile(const String& path, std::ios::openmode mode) {
    return std::fstream(nativeUtf8Path(path), mode);
}

std::ofstream openFileForWriting(const String& path, std::ios::openmode mode) {
    return std::ofstream(nativeUtf8Path(path), mode | std::ios::trunc);
}

}  // namespace VelmoraQuavin::internal::platform
