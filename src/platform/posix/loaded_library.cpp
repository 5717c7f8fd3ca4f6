#include "platform/loaded_library.h"

#include <link.h>

#include <string>

namespace VelmoraQuavin::internal::platform {
namespace {

struct Search {
    std::string fileName;  // up to the ending
    std::string found;     // no path yet: nothing may leave the system's loop
};

int look(dl_phdr_info* library, std::size_t /*size*/, void* data) noexcept {
    auto& search = *static_cast<Search*>(data);
    const std::string_view path = library->dlpi_name;
    const std::string_view name = path.substr(path.rfind('/') + 1);
    if (name.substr(0, search.fileName.size()) != search.fileName) {
        return 0;
    }
    try {
        search.found = path;
    } catch (...) {
        search.found.clear();
    }
    return 1;
}

}  // namespace

std::optional<std::filesystem::path> directoryOfLibrary(std::string_view name) {
    Search search{"lib" + std::string(name) + ".so", ""};
    ::dl_iterate_phdr(look, &search);
    if (search.found.empty()) {
        return std::nullopt;
    }
    return std::filesystem::path(search.found).parent_path();
}

}  // namespace VelmoraQuavin::internal::platform
