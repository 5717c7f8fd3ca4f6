#include "platform/file_streams.h"

#include <filesystem>

#include "platform/windows/wide_path.h"

namespace VelmoraQuavin::internal::platform {
namespace {

// Selects the wide interface, which lets others read and write the file as well.
std::filesystem::path systemPath(const String& path) {
    return widePath(path);
}

}  // namespace

std::fstream openFile(const String& path, std::ios::openmode mode) {
    return std::fstream(systemPath(path), mode);
}

std::ofstream openFileForWriting(const String& path, std::ios::openmode mode) {
    return std::ofstream(systemPath(path), mode | std::ios::trunc);
}

}  // namespace VelmoraQuavin::internal::platform
