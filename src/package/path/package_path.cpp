#include "package/path/package_path.h"

#include <algorithm>

namespace VelmoraQuavin::internal {

std::string packagePath(std::string_view path) {
    std::string name;
    while (!path.empty()) {
        const std::string_view part = path.substr(0, path.find_first_of("/\\"));
        if (!part.empty() && part != ".") {
            name.append(name.empty() ? "" : "/").append(part);
        }
        path.remove_prefix(std::min(part.size() + 1, path.size()));
    }
    return name;
}

}  // namespace VelmoraQuavin::internal
