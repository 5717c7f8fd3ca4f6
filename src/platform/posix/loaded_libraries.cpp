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
    // The first image is the program itself.
    for (std::uint32_t i = 1; i < ::_dyld_image_count(); ++i) {
        files.emplace_back(::_dyld_get_image_name(i));
    }
    return files;
}

#else

namespace {

// The program itself and objects provided by the kernel have no path.
int addFile(struct dl_phdr_info* library, std::size_t /*size*/, void* files) noexcept {
    const std::string_view path = library->dlpi_name == nullptr ? "" : library->dlpi_name;
    try {
        if (path.find('/') != std::string_view::npos) {
            static_cast<std::vector<std::string>*>(files)->emplace_back(path);
        }
        return 0;
    } catch (...) {
        return 1;  // out of memory: no exception may leave the system's loop
    }
}

}  // namespace

std::vector<std::string> loadedLibraries() {
    std::vector<std::string> files;
    ::dl_iterate_phdr(addFile, &files);
    return files;
}

#endif

}  // namespace VelmoraQuavin::internal::platform
