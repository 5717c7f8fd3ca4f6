#include "platform/file_streams.h"

#include <windows.h>

#include <filesystem>

#include "platform/windows/file_handle.h"
#include "platform/windows/wide_path.h"

namespace VelmoraQuavin::internal::platform {
namespace {

// Through the wide interface, which opens files for others to read and write as well.
std::filesystem::path systemPath(const String& path) {
    return widePath(path);
}

// A directory, or a device such as "NUL".
bool isSpecial(const std::filesystem::path& path) {
    const FileHandle file(::CreateFileW(
        path.c_str(), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
        nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return file && !isPlainFile(file.get());
}

}  // namespace

std::fstream openFile(const String& path, std::ios::openmode mode) {
    return std::fstream(systemPath(path), mode);
}

std::ifstream openFileAtEnd(const String& path) {
    const std::filesystem::path file = systemPath(path);
    if (isSpecial(file)) {
        return {};
    }
    return std::ifstream(file, std::ios::binary | std::ios::ate);
}

std::ofstream openFileForWriting(const String& path, std::ios::openmode mode) {
    return std::ofstream(systemPath(path), mode | std::ios::trunc);
}

}  // namespace VelmoraQuavin::internal::platform
