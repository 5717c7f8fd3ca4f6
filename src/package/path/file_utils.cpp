#include <optional>
#include <string>

#include "core/diagnostics.h"
#include "core/stream_steps.h"
#include "package/source/sized_file.h"
#include "platform/file_streams.h"
#include "platform/file_system.h"
#include "quavin/files.h"
#include "quavin/status.h"
#include "text/unicode.h"

namespace VelmoraQuavin {

using internal::SizedFile;

namespace {

// These operations cannot report a failed read: the missing bytes are zeros.
void readAvailable(const Filepath& path, SizedFile& file, char* buffer) {
    std::string problem;
    if (!file.tryRead(buffer, problem)) {
        internal::diagnose([&] {
            return "reading the file " + internal::inQuotes(path.c_str()) + ": it " + problem;
        });
    }
}

}  // namespace

void FileUtils::createDir(const Filepath& path) {
    using internal::platform::DirectoryCreation;
    if (internal::platform::createDirectory(path.c_str()) == DirectoryCreation::kParentMissing) {
        throw FileException(String("Path incorrect : ") + path.c_str());
    }
}

void FileUtils::deleteDir(const Filepath& /*path*/) {}

void FileUtils::deleteFile(const Filepath& path) {
    if (!internal::platform::removeFile(path.c_str())) {
        throw FileException(String("Could not delete file : ") + path.c_str());
    }
}

bool FileUtils::pathExists(const Filepath& path) {
    return !internal::platform::isMissing(path.c_str());
}

uint64 FileUtils::getFileSize(const Filepath& path) {
    return SizedFile::open(path).size();
}

std::unique_ptr<char[]> FileUtils::readBinaryFileToBuffer(const Filepath& path, uint64& size) {
    std::string problem;
    std::optional<SizedFile> file = SizedFile::tryOpen(path, problem);
    if (!file.has_value()) {
        return nullptr;
    }
    // Not make_unique, which would first fill the memory with zeros.
    std::unique_ptr<char[]> buffer(new char[file->size()]);
    readAvailable(path, *file, buffer.get());
    size = file->size();
    return buffer;
}

void FileUtils::readBinaryFileToAllocated(const Filepath& path, uint64& size, char* buffer) {
    SizedFile file = SizedFile::open(path);
    size = file.size();
    readAvailable(path, file, buffer);
}

std::ofstream FileUtils::openFileToWriteBinaryData(const Filepath& path) {
    return internal::platform::openFileForWriting(path.c_str(), std::ios::binary);
}

bool FileUtils::writeBinaryDataToFile(const void* data, uint64 length, const Filepath& path) {
    std::ofstream file = openFileToWriteBinaryData(path);
    internal::writeInSteps(file, static_cast<const char*>(data), length);
    return true;
}

bool FileUtils::writeStringToFile(const String& text, const Filepath& path) {
    std::ofstream file = internal::platform::openFileForWriting(path.c_str(), std::ios::out);
    file << internal::untilZeroByte(text.view());
    return true;
}

}  // namespace VelmoraQuavin
