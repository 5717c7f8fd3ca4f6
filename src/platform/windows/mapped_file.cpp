#include "platform/mapped_file.h"

#include <windows.h>

#include "platform/windows/file_mapping.h"

namespace VelmoraQuavin::internal::platform {

std::optional<MappedFile> mapFile(const FileHandle& file, std::size_t size, std::string& problem) {
    HANDLE section = ::CreateFileMappingW(file.get(), nullptr, PAGE_READONLY, 0, 0, nullptr);
    if (section == nullptr) {
        problem = problemText("cannot be mapped into memory", ::GetLastError());
        return std::nullopt;
    }
    const FileHandle closing(section);  // the view keeps what it needs
    const void* const memory = ::MapViewOfFile(section, FILE_MAP_READ, 0, 0, size);
    if (memory == nullptr) {
        problem = problemText("cannot be mapped into memory", ::GetLastError());
        return std::nullopt;
    }
    return MappedFile(static_cast<const char*>(memory), size);
}

MappedFile::~MappedFile() {
    if (data_ != nullptr) {
        ::UnmapViewOfFile(data_);
    }
}

}  // namespace VelmoraQuavin::internal::platform
