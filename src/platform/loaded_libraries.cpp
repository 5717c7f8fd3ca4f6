#include "platform/loaded_libraries.h"

#include "text/unicode.h"

namespace VelmoraQuavin::internal::platform {

std::optional<std::filesystem::path> directoryOfLibrary(std::string_view name) {
#if defined(_WIN32)
    const std::string beginning = std::string(name) + ".";
#else
    const std::string beginning = "lib" + std::string(name) + ".";
#endif
    for (const std::string& file : loadedLibraries()) {
        const std::filesystem::path path = std::filesystem::u8path(file);
        const std::string fileName = path.filename().u8string();
        if (toAsciiLower(fileName).compare(0, beginning.size(), beginning) == 0) {
            return path.parent_path();
        }
    }
    return std::nullopt;
}

}  // namespace VelmoraQuavin::internal::platform
