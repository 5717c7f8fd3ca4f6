#include "platform/loaded_libraries.h"

#if defined(__APPLE__)
#include <mach-o/dyld.h>
#else
#include <link.h>
#endif

#include <cstddef>

namespace VelmoraQuavin::internal::platform {

#if defined(__APPLE__)

std::vector<std::string> loadedLibraries() {
    std::vector<std::string> files;
    // The first is the program.
    for (std::uint32_t i = 1; i < ::_dyld_image_count(); ++i) {
        files.emplace_back(::_dyld_get_image_name(i));
    }
    return files;
}

#else

namespace {

// The program itself and what the kernel gives have no path.
int addFile(struct dl_phdr_info* library, std::size_t /*size*/, void* files) {
    const std::string path = library->dlpi_name == nullptr ? "" : library->dlpi_name;
    if (path.find('/') != std::string::npos) {
        static_cast<std::vector<std::string>*>(files)->push_back(path);
    }
    return 0;
}

}  // namespace

std::vector<std::string> loadedLibraries() {
    std::vector<std::string> files;
    ::dl_iterate_phdr(addFile, &files);
    return files;
}

#endif

}  // namespace VelmoraQuavin::internal::platform
