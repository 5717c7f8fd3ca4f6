#include "unit/package/path/path_cases.h"

namespace VelmoraQuavin::testing {

PathCase same(const std::string& name, PathOperation operation, const std::string& path,
              const std::string& outcome) {
    return {name, operation, path, outcome, outcome, ""};
}

PathCase differs(const std::string& difference, const std::string& name, PathOperation operation,
                 const std::string& path, const std::string& posix, const std::string& windows) {
    return {name, operation, path, posix, windows, difference};
}

PathCase depends(const std::string& difference, const std::string& name, PathOperation operation,
                 const std::string& path, const std::string& posix) {
    return {name, operation, path, posix, "", difference};
}

std::vector<PathCase> pathCases() {
    std::vector<PathCase> all;
    for (const auto& cases :
         {pathTextCases(), pathNameCases(), pathLengthCases(), pathSystemCases()}) {
        all.insert(all.end(), cases.begin(), cases.end());
    }
    return all;
}

}  // namespace VelmoraQuavin::testing
