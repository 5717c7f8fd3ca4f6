#include "platform/mapped_file.h"

#include <sys/mman.h>

#include <cerrno>

#include "platform/posix/file_mapping.h"
#include "platform/posix/whole_write.h"

namespace VelmoraQuavin::internal::platform {

std::optional<MappedFile> mapFile(const FileDescriptor& file, std::size_t size,
                                  std::string& problem) {
    void* const memory = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.get(), 0);
    if (memory == MAP_FAILED) {
        problem = problemText("cannot be mapped into memory", errno);
        return std::nullopt;
    }
    return MappedFile(static_cast<const char*>(memory), size);
}

MappedFile::~MappedFile() {
    if (data_ != nullptr) {
        ::munmap(const_cast<char*>(data_), size_);
    }
}

}  // namespace VelmoraQuavin::internal::platform
